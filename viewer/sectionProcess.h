#pragma once

#include <QObject>
#include <QProcess>
#include <QTimer>

namespace norvex {
namespace Viewer {

/// Makes one section of this machine's report in a process of its own, because what it asks may keep its caller waiting
/// for minutes, or end it. Deleting it ends the process.
class SectionProcess : public QObject
{
    Q_OBJECT

public:
    enum class Outcome { Answered, Silent, Failed };

    /// @param section its name in the table
    /// @param patienceMs how long the section may take
    SectionProcess(QObject* parent, const char* section, int patienceMs);
    ~SectionProcess() override;

    const char* section() const { return section_; }
    bool hasEnded() const { return hasEnded_; }
    Outcome outcome() const { return outcome_; }

    void start();

signals:
    /// @param text of the section; empty if the outcome is another than Answered
    void ended(const QString& text);

private:
    void end(Outcome outcome);

    const char* const section_;
    const int patienceMs_;
    QProcess process_;
    QTimer limit_;
    bool hasEnded_ = false;
    Outcome outcome_ = Outcome::Failed;
};

/// Whether the arguments ask this program for a section in place of a window, as SectionProcess starts it. If so, it is
/// printed.
bool answersSection(int argc, char* argv[]);

} // namespace Viewer
} // namespace norvex
