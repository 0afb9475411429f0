#pragma once

#include <QPointer>
#include <QWidget>

class QCheckBox;
class QLabel;

namespace norvex {
namespace Viewer {

class Document;

/// What the identification reader finds in the original of a report, or why it does not.
class IdentificationPanel : public QWidget
{
    Q_OBJECT

public:
    explicit IdentificationPanel(QWidget* parent = nullptr);

    /// @param document null for none; not owned
    void setDocument(Document* document);

private:
    void update();

    QPointer<Document> document_;
    QLabel* message_;
    QLabel* addresses_;
    QLabel* processors_;
    QLabel* revision_;
    QWidget* values_;
    QCheckBox* skipsBraced_;
};

} // namespace Viewer
} // namespace norvex
