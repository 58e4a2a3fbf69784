#pragma once

#include <QList>
#include <QStringView>

namespace velcoran::sqlite {

enum class TokenKind {
    Blank,
    Comment,     ///< "-- ..." or "/* ... */", also one that does not end
    Word,        ///< keyword or plain name
    Name,        ///< name in brackets, double quotes or back quotes
    Text,        ///< 'text', quotes inside doubled
    Number,      ///< digits with point and exponent, or 0x...
    Operator,    ///< one operator or punctuation mark
    Unfinished,  ///< a quote or bracket that nothing closes, to the end of the text
};

struct Token {
    TokenKind kind;
    QStringView text;

    /// True for a word, in any case of its letters.
    [[nodiscard]] bool isWord(QStringView word) const {
        return kind == TokenKind::Word && text.compare(word, Qt::CaseInsensitive) == 0;
    }
    [[nodiscard]] bool isOperator(QStringView sign) const { return kind == TokenKind::Operator && text == sign; }
    [[nodiscard]] bool isMeaningful() const { return kind != TokenKind::Blank && kind != TokenKind::Comment; }
};

/// Cuts a statement into tokens, as the database does. The tokens laid side by side are the text again.
[[nodiscard]] QList<Token> tokenize(QStringView text);

}  // namespace velcoran::sqlite
