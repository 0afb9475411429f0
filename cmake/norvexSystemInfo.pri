# For applications built with qmake, from Qt 5.6 on:
#   include(PATH/norvexSystemInfo.pri)
# NORVEX_PREFIX names where the library was installed; without it, the folder of this file (where it is installed
# as share/norvexSystemInfo/norvexSystemInfo.pri, two folders below the prefix).

isEmpty(NORVEX_PREFIX): NORVEX_PREFIX = $$clean_path($$PWD/../..)

QT += core
INCLUDEPATH += $$NORVEX_PREFIX/include/norvexSystemInfo
macx: LIBS += -L$$NORVEX_PREFIX/Libraries
else: LIBS += -L$$NORVEX_PREFIX/lib
LIBS += -lnorvexSystemInfo
