#pragma once

namespace norvex {
namespace Viewer {

class ReportTextView;

/// Lets screen readers read ReportTextView: its text by lines and words, cursor and selection.
void installReportTextAccessible();

/// Tells screen readers where the cursor and the selection are.
void tellAccessibleCursor(ReportTextView* view);

} // namespace Viewer
} // namespace norvex
