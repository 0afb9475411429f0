#pragma once

#include <QString>

namespace norvex::Tool {

/// Starts to ask for the printers in another process, because a print server can keep its client waiting for minutes.
/// Call it before there is a thread or an application object, if the section is wanted.
void startToAskForPrinters();

/// The section "qtPrinterInfo", 3 seconds after startToAskForPrinters() at the latest. Without an answer it names no
/// printer, and a message on standard error says why. Further calls give the same answer.
QString printerSection();

/// How long the answer may take.
const int printerTimeoutMs = 2800;

/// The section as the other process answers it, once.
/// @param[out] errorMessage receives the reason when that fails
bool readPrinterSection(QString& section, QString& errorMessage);

} // namespace norvex::Tool
