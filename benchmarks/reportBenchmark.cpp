// Sections and the whole report: live, from a recording, and over registries of growing size; loading a recording.
// NORVEX_RECORDING=FILE measures that recording besides the generated ones. Without a display it chooses Qt's
// offscreen platform, on which no OpenGL context can be made.

#include "systeminfo/mac/norvexSystemInfoMac.h"
#include "systeminfo/mac/platform/machine.h"
#include "systeminfo/mac/platform/recorded/recordedMachine.h"
#include "systeminfo/norvexSystemInfo.h"

#include <QApplication>
#include <QBuffer>
#include <QFile>
#include <QGLWidget>
#include <QOpenGLFunctions>

#include <benchmark/benchmark.h>

#include <functional>
#include <string>

using namespace norvex::SystemInfo;

namespace {

const char entryTemplate[] = R"(
<dict><key>name</key><string>Device</string>
<key>classes</key><array><string>%1</string><string>IOService</string><string>IORegistryEntry</string></array>
<key>properties</key><dict>
<key>idVendor</key><integer size="32">1452</integer><key>idProduct</key><integer size="32">32776</integer>
<key>locationID</key><integer size="32">0x14200000</integer><key>USB Address</key><integer size="32">5</integer>
<key>Device Speed</key><integer size="32">2</integer><key>USB Product Name</key><string>Keyboard</string>
<key>IOName</key><string>pci8086,1d10</string><key>Model</key><string>Drive</string>
</dict></dict>)";

/// Entries side by side; every hundredth is a USB device, the others are what sections pass over.
QByteArray recordingWith(int entries)
{
    const QByteArray device = QByteArray(entryTemplate).replace("%1", "IOUSBDevice");
    const QByteArray other = QByteArray(entryTemplate).replace("%1", "IOPCIDevice");
    QByteArray text = "<plist version=\"1.0\"><dict><key>recording</key><integer>1</integer>"
                      "<key>registry</key><dict><key>children</key><array>";
    text.reserve(text.size() + entries * other.size());
    for (int i = 0; i < entries; ++i) {
        text += i % 100 == 0 ? device : other;
    }
    return text + "</array></dict></dict></plist>";
}

std::shared_ptr<const norvex::Machine> machineOf(QByteArray recording)
{
    QBuffer buffer(&recording);
    buffer.open(QIODevice::ReadOnly);
    norvex::PropertyListFailure failure;
    return norvex::readRecording(buffer, failure);
}

void loadRecording(benchmark::State& state, const QByteArray& recording)
{
    for (auto _ : state) {
        benchmark::DoNotOptimize(machineOf(recording));
    }
    state.SetBytesProcessed(state.iterations() * recording.size());
}

void loadGenerated(benchmark::State& state)
{
    loadRecording(state, recordingWith(int(state.range(0))));
}
BENCHMARK(loadGenerated)->Arg(2000)->Arg(20000)->Unit(benchmark::kMillisecond);

/// The cost of an entry: the figure to watch is the time per item from one size to the next.
void macintoshSectionByEntries(benchmark::State& state)
{
    const auto machine = machineOf(recordingWith(int(state.range(0))));
    norvex::setMachine(machine);
    for (auto _ : state) {
        benchmark::DoNotOptimize(MacSysInfo::allInfos());
    }
    norvex::setMachine(nullptr);
    state.SetItemsProcessed(state.iterations() * state.range(0));
}
BENCHMARK(macintoshSectionByEntries)
    ->RangeMultiplier(10)
    ->Range(1000, 1000000)
    ->Unit(benchmark::kMillisecond);

using Text = std::function<QString()>;

void makeText(benchmark::State& state, const Text& text, std::shared_ptr<const norvex::Machine> machine)
{
    norvex::setMachine(std::move(machine));
    for (auto _ : state) {
        benchmark::DoNotOptimize(text());
    }
    norvex::setMachine(nullptr);
}

/// What the OpenGL section cannot do without: a QGLWidget and four questions. The figure to watch is how the section's
/// time relates to this one.
void bareGLWidget(benchmark::State& state)
{
    for (auto _ : state) {
        QGLWidget widget;
        widget.makeCurrent();
        for (const GLenum name : {GL_VERSION, GL_VENDOR, GL_RENDERER, GL_EXTENSIONS}) {
            QOpenGLContext* context = QOpenGLContext::currentContext();
            benchmark::DoNotOptimize(context ? context->functions()->glGetString(name) : nullptr);
        }
    }
}
BENCHMARK(bareGLWidget)->Unit(benchmark::kMicrosecond);

void discard(QtMsgType, const QMessageLogContext&, const QString&) {}

/// The texts of one machine: each section and what they make together. Of a recorded machine only the Macintosh
/// sections say anything.
void registerTexts(const std::string& machineName, const std::shared_ptr<const norvex::Machine>& machine)
{
    const auto add = [&](const std::string& name, const Text& text) {
        benchmark::RegisterBenchmark((machineName + "/" + name).c_str(), makeText, text, machine)
            ->Unit(benchmark::kMicrosecond);
    };
    add("allInfos(true)", [] { return norvex::SystemInfo::allInfos(true); });
    add("macintosh", MacSysInfo::allInfos);
    for (const SectionInfo& section : sections()) {
        if (machine == nullptr || section.half == ReportHalf::Macintosh) {
            add(section.name, section.text);
        }
    }
    if (machine == nullptr) {
        add("allInfos(false)", [] { return norvex::SystemInfo::allInfos(false); });
    }
}

} // namespace

int main(int argc, char* argv[])
{
    if (!qEnvironmentVariableIsSet("DISPLAY") && !qEnvironmentVariableIsSet("QT_QPA_PLATFORM")) {
        qputenv("QT_QPA_PLATFORM", "offscreen");
    }
    const QApplication application(argc, argv);
    qInstallMessageHandler(discard);
    benchmark::Initialize(&argc, argv);
    registerTexts("live", nullptr);
    QFile recording(qEnvironmentVariable("NORVEX_RECORDING"));
    if (recording.open(QIODevice::ReadOnly)) {
        const QByteArray text = recording.readAll();
        benchmark::RegisterBenchmark("recorded/load", loadRecording, text)->Unit(benchmark::kMillisecond);
        registerTexts("recorded", machineOf(text));
    }
    benchmark::RunSpecifiedBenchmarks();
    return 0;
}
