#pragma once

#include <QString>

#include <optional>

namespace norvex::SystemInfo::Internal {

/// The text of a section under construction: whole lines, each with the line terminator of its namespace.
class SectionText
{
public:
    explicit SectionText(const QString& newLine) : newLine_(newLine) {}

    /// Appends a line.
    SectionText& line(const QString& text);
    SectionText& line(const char* text) { return line(QString::fromLatin1(text)); }
    /// Appends a line that shows a value.
    /// @param label with the blanks behind it
    SectionText& line(const char* label, const QString& value);
    /// The same; appends nothing without a value, because its query failed.
    SectionText& line(const char* label, const std::optional<QString>& value);
    /// Appends a line that shows a value in single quotes.
    SectionText& quotedLine(const char* label, const QString& value);
    /// Appends lines that have their terminators.
    SectionText& lines(const QString& text);

    const QString& text() const { return text_; }

private:
    const QString newLine_;
    QString text_;
};

/// A number as the report writes hexadecimal ones: "0x" and at least @p width lower-case digits.
QString hexadecimal(quint64 number, int width = 1);

} // namespace norvex::SystemInfo::Internal
