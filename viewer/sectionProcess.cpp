#include "viewer/sectionProcess.h"

#include "systeminfo/norvexSystemInfo.h"

#include <QApplication>

#include <cstdio>
#include <cstring>
#include <memory>

namespace norvex {
namespace Viewer {

using namespace SystemInfo;

namespace {

const char sectionOption[] = "--print-section";

const SectionInfo* sectionNamed(const char* name)
{
    for (const SectionInfo& section : sections()) {
        if (std::strcmp(section.name, name) == 0) {
            return &section;
        }
    }
    return nullptr;
}

} // namespace

SectionProcess::SectionProcess(QObject* parent, const char* section, int patienceMs)
    : QObject(parent), section_(section), patienceMs_(patienceMs)
{
    limit_.setSingleShot(true);
    connect(&limit_, &QTimer::timeout, this, [this] { end(Outcome::Silent); });
    connect(&process_, static_cast<void (QProcess::*)(int, QProcess::ExitStatus)>(&QProcess::finished), this,
            [this](int exitCode, QProcess::ExitStatus status) {
                const bool isAnswered = status == QProcess::NormalExit && exitCode == 0;
                end(isAnswered ? Outcome::Answered : Outcome::Failed);
            });
    connect(&process_, &QProcess::errorOccurred, this, [this](QProcess::ProcessError error) {
        if (error == QProcess::FailedToStart) {
            end(Outcome::Failed);
        }
    });
}

SectionProcess::~SectionProcess()
{
    process_.disconnect(this);
    if (process_.state() != QProcess::NotRunning) {
        process_.kill();
        process_.waitForFinished(1000);
    }
}

void SectionProcess::start()
{
    process_.setProcessChannelMode(QProcess::ForwardedErrorChannel);
    limit_.start(patienceMs_);
    process_.start(QCoreApplication::applicationFilePath(),
                   {QLatin1String(sectionOption), QLatin1String(section_), QStringLiteral("-platform"),
                    QGuiApplication::platformName()});
}

void SectionProcess::end(Outcome outcome)
{
    limit_.stop();
    if (hasEnded_) {
        return;
    }
    hasEnded_ = true;
    outcome_ = outcome;
    process_.kill();
    emit ended(outcome == Outcome::Answered ? QString::fromUtf8(process_.readAllStandardOutput())
                                            : QString());
}

bool answersSection(int argc, char* argv[])
{
    const int leastArguments = 3;
    if (argc < leastArguments || std::strcmp(argv[1], sectionOption) != 0) {
        return false;
    }
    const SectionInfo* const section = sectionNamed(argv[2]);
    if (section == nullptr) {
        return true;
    }
    // A window system takes its time, and is in the way of what does without.
    const bool needsWindows = section->application != SectionApplication::None;
    const std::unique_ptr<QCoreApplication> application(needsWindows ? new QApplication(argc, argv)
                                                                     : new QCoreApplication(argc, argv));
    const QByteArray text = section->text().toUtf8();
    std::fwrite(text.constData(), 1, static_cast<size_t>(text.size()), stdout);
    return true;
}

} // namespace Viewer
} // namespace norvex
