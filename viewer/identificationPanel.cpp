#include "viewer/identificationPanel.h"

#include "viewer/document.h"
#include "viewer/statePages.h"

#include <QCheckBox>
#include <QFontDatabase>
#include <QLabel>
#include <QScrollArea>
#include <QVBoxLayout>

namespace norvex {
namespace Viewer {

namespace {

/// More of them no person reads; a text may hold millions.
const int mostAddresses = 200;

QLabel* valueLabel(const char* name)
{
    auto* const label = new QLabel;
    label->setObjectName(QLatin1String(name));
    label->setTextFormat(Qt::PlainText);
    label->setFont(QFontDatabase::systemFont(QFontDatabase::FixedFont));
    label->setTextInteractionFlags(Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard);
    label->setAlignment(Qt::AlignTop | Qt::AlignLeft);
    return label;
}

} // namespace

IdentificationPanel::IdentificationPanel(QWidget* parent)
    : QWidget(parent), message_(wrappedLabel()), addresses_(valueLabel("macAddresses")),
      processors_(valueLabel("processors")), revision_(valueLabel("revision")), values_(new QWidget),
      skipsBraced_(new QCheckBox(tr("Skip names in &braces")))
{
    message_->setObjectName(QStringLiteral("identificationMessage"));
    auto* const values = new QVBoxLayout(values_);
    values->setContentsMargins(0, 0, 0, 0);
    values->setSpacing(2);
    const auto addValue = [values](const QString& name, QLabel* value) {
        QLabel* const label = boldLabel(name);
        label->setBuddy(value);
        value->setAccessibleName(name);
        values->addWidget(label);
        values->addWidget(value);
        values->addSpacing(12);
    };
    addValue(tr("MAC addresses"), addresses_);
    addValue(tr("Number of processors"), processors_);
    addValue(tr("Processor revision"), revision_);

    auto* const content = new QWidget;
    auto* const contentLayout = new QVBoxLayout(content);
    contentLayout->setContentsMargins(0, 0, 0, 0);
    contentLayout->addWidget(message_);
    contentLayout->addWidget(values_);
    contentLayout->addStretch(1);
    auto* const area = new QScrollArea;
    area->setWidget(content);
    area->setWidgetResizable(true);
    area->setFrameShape(QFrame::NoFrame);
    area->setAccessibleName(tr("Identification"));

    skipsBraced_->setToolTip(tr("Network interfaces with a name in braces do not count."));
    QLabel* const note = wrappedLabel(tr("Read from the original text, private data included."));
    auto* const layout = new QVBoxLayout(this);
    layout->addWidget(area, 1);
    layout->addWidget(skipsBraced_);
    layout->addWidget(note);
    connect(skipsBraced_, &QCheckBox::toggled, this, &IdentificationPanel::update);
    setDocument(nullptr);
}

void IdentificationPanel::setDocument(Document* document)
{
    if (document_ != nullptr) {
        document_->disconnect(this);
    }
    document_ = document;
    if (document_ != nullptr) {
        connect(document_, &Document::changed, this, &IdentificationPanel::update);
    }
    update();
}

void IdentificationPanel::update()
{
    const bool isKnown = document_ != nullptr && document_->original().outline != nullptr;
    skipsBraced_->setEnabled(isKnown);
    values_->setVisible(false);
    message_->setVisible(true);
    if (!isKnown) {
        const bool isFailed = document_ != nullptr && document_->state() == Document::State::Failed;
        message_->setText(document_ == nullptr ? tr("No report is open.")
                          : isFailed           ? tr("There is no report to read from.")
                                               : tr("The report is being read…"));
        return;
    }
    const Identification& found = document_->identification(skipsBraced_->isChecked());
    if (!found.errorMessage.isEmpty()) {
        message_->setText(tr("No identification: %1").arg(found.errorMessage));
        return;
    }
    QStringList addresses = found.macAddresses.mid(0, mostAddresses);
    if (found.macAddresses.size() > mostAddresses) {
        addresses += tr("… and %n more", nullptr, found.macAddresses.size() - mostAddresses);
    }
    addresses_->setText(addresses.isEmpty() ? tr("none") : addresses.join(QLatin1Char('\n')));
    processors_->setText(QString::number(found.processors));
    revision_->setText(
        QStringLiteral("%1 = 0x%2").arg(found.revision).arg(found.revision, 4, 16, QLatin1Char('0')));
    message_->setVisible(false);
    values_->setVisible(true);
}

} // namespace Viewer
} // namespace norvex
