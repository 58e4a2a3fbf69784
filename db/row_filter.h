#pragma once

#include <QString>
#include <QStringView>

namespace velcoran::db {

/// A row set's filter expression, read: [column] Like 'text%'.
///
/// As client-side row sets have it, "%" stands for any characters at the start and at the end of the pattern only;
/// between other characters, and "_" and "[" anywhere, are ordinary characters.
struct RowFilter {
    QString column;  ///< name as written, without its brackets
    QString text;    ///< what is looked for, case-folded, without the "%" around it
    bool isOpenBefore = false;
    bool isOpenAfter = false;

    /// Reads an expression. The column stands in brackets, or bare where it is one word of letters, digits and "_".
    /// @throws Error kInvalidProcedureCall for anything else; a quote in the text or a closing bracket in the name
    /// among
    ///         others
    [[nodiscard]] static RowFilter parse(const QString& expression);

    /// True for a value that passes; letters are compared case-insensitively (simple case folding of each character).
    [[nodiscard]] bool matches(QStringView value) const;

    /// A first look that turns most values away: false only for one that does not pass.
    [[nodiscard]] bool mayMatch(const char16_t* value, std::size_t length) const {
        if (isOpenBefore || text.isEmpty()) return true;
        if (length < static_cast<std::size_t>(text.size())) return false;
        const char16_t first = *value;
        const char16_t lower = first >= u'A' && first <= u'Z' ? static_cast<char16_t>(first + 0x20) : first;
        return first >= 0x80 || lower == *text.utf16();
    }
};

}  // namespace velcoran::db
