// The fields in which the user keeps what he knows about one font's licence.
#pragma once

#include "notes/LicenseNote.h"

#include <QWidget>

#include <string>

class QComboBox;
class QLabel;
class QLineEdit;
class QPlainTextEdit;
class QPushButton;
class QToolButton;

namespace quillmark {

class AppModel;
class SelectableText;
class TextLabel;

/// Edits one note of the model. There is no button for saving: each edit is saved at once.
class NoteEditor final : public QWidget {
    Q_OBJECT
public:
    /// The model has to outlive the editor. Nothing is loaded until there is a key.
    explicit NoteEditor(AppModel& model, QWidget* parent = nullptr);

    /// Shows the note of the font with this PostScript name. What was typed before belongs to the
    /// former font, and cannot be undone into this one's.
    void setKey(const std::string& key);
    [[nodiscard]] const std::string& key() const { return m_key; }

private:
    enum class Fields { keep, replace };

    void createFields();
    void createAttachmentRow();
    void save();
    void read(Fields fields);
    void showLinkButton();
    void showRest();

    AppModel& m_model;
    std::string m_key;
    LicenseNote m_note; // as edited
    bool m_loaded{};    // whether the fields show `m_note`
    bool m_filling{};   // whether the fields are being filled, not edited

    QComboBox* m_license{};
    QLineEdit* m_boughtFrom{};
    QPlainTextEdit* m_text{};
    QLineEdit* m_link{};
    QToolButton* m_openLink{};
    QLabel* m_paperclip{};
    SelectableText* m_attachment{};
    TextLabel* m_noAttachment{};
    QPushButton* m_openAttachment{};
    QPushButton* m_removeAttachment{};
    QPushButton* m_attach{};
    TextLabel* m_saved{};
};

} // namespace quillmark
