#pragma once

#include "desktop/own_look.h"

#include <QDialog>
#include <QList>
#include <QString>

class QLineEdit;
class QListWidget;

namespace velcoran::dialogs {

/// A format as the dialog offers it.
struct OfferedFormat {
    int type = 0;
    QString name;
    QString extension;  ///< without the point
};

/// A file name with the extension of a chosen format: an extension of one of the formats gives way, any other part of
/// the name stays; a name without one gets it.
[[nodiscard]] QString withExtension(const QString& file, const QString& extension, const QList<OfferedFormat>& formats);

/// Asks for a format and a file. The file's folder exists when the dialog is accepted, and the user has agreed to
/// replace a file that is there.
class ExportDialog final : public QDialog {
public:
    /// @param formats        not empty
    /// @param suggestedFile  full path; its extension selects the format
    ExportDialog(QWidget* parent, QList<OfferedFormat> formats, const QString& suggestedFile);

    [[nodiscard]] int type() const;
    /// Full path.
    [[nodiscard]] QString file() const;
    void accept() override;

private:
    void build(const QString& suggestedFile);
    void selectFormatOf(const QString& file);
    void followFormat();
    void browse();
    [[nodiscard]] const OfferedFormat& chosen() const;
    [[nodiscard]] QString refusal() const;
    [[nodiscard]] bool mayReplace();

    desktop::OwnLook m_look{*this};
    QList<OfferedFormat> m_formats;
    QString m_folder;  ///< of the suggestion: a name without a folder lies there
    QListWidget* m_list;
    QLineEdit* m_file;
};

}  // namespace velcoran::dialogs
