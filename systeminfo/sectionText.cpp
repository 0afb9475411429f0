#include "systeminfo/sectionText.h"

namespace norvex::SystemInfo::Internal {

SectionText& SectionText::line(const QString& text)
{
    text_ += text;
    text_ += newLine_;
    return *this;
}

SectionText& SectionText::line(const char* label, const QString& value)
{
    text_ += QLatin1String(label);
    return line(value);
}

SectionText& SectionText::line(const char* label, const std::optional<QString>& value)
{
    return value ? line(label, *value) : *this;
}

SectionText& SectionText::quotedLine(const char* label, const QString& value)
{
    return line(label, QLatin1Char('\'') + value + QLatin1Char('\''));
}

SectionText& SectionText::lines(const QString& text)
{
    text_ += text;
    return *this;
}

QString hexadecimal(quint64 number, int width)
{
    return QStringLiteral("0x%1").arg(number, width, 16, QLatin1Char('0'));
}

} // namespace norvex::SystemInfo::Internal
