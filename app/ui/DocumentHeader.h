// What stands above the fonts of a checked PDF: its name, and in one sentence what was found.
#pragma once

#include "pdf/PDFFontScanner.h"

#include <QWidget>

namespace quillmark {

class FindingText;
class SelectableText;
class TextLabel;

class DocumentHeader final : public QWidget {
    Q_OBJECT
public:
    explicit DocumentHeader(QWidget* parent = nullptr);

    void setAudit(const DocumentAudit& audit);

private:
    SelectableText* m_name;
    TextLabel* m_line;
    FindingText* m_finding;
    TextLabel* m_note;
};

} // namespace quillmark
