#pragma once

#include "viewer/job.h"
#include "viewer/textLines.h"

#include <QString>

class QPagedPaintDevice;

namespace norvex {
namespace Viewer {

/// Prints a text: fixed-width, long lines wrapped, with title and date above and the number of the page below each. Any
/// thread; it takes some milliseconds a page, and tells how far it is.
/// @return the reason of a failure; empty on success and after it was cancelled
QString printText(const TextLines& lines, const QString& title, QPagedPaintDevice& device,
                  const JobControl& control);

/// Prints a text into a PDF file. A file that is there is replaced when all is written, else it stays as it was.
QString exportPdf(const TextLines& lines, const QString& title, const QString& fileName,
                  const JobControl& control);

} // namespace Viewer
} // namespace norvex
