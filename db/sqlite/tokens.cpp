#include "tokens.h"

namespace velcoran::sqlite {

namespace {

bool isBlank(QChar character) {
    return character == u' ' || character == u'\t' || character == u'\n' || character == u'\r' || character == u'\f';
}

bool isDigit(QChar character) { return character >= u'0' && character <= u'9'; }

bool isWordPart(QChar character) {
    const char16_t unit = character.unicode();
    return unit >= 0x80 || unit == u'_' || unit == u'$' || unit == u'@' || unit == u'#' || isDigit(character) ||
           (unit >= u'a' && unit <= u'z') || (unit >= u'A' && unit <= u'Z');
}

/// Finds the end of one token after another.
class Scanner {
public:
    explicit Scanner(QStringView text) : m_text(text) {}

    [[nodiscard]] bool isAtEnd() const { return m_at == m_text.size(); }
    Token next();

private:
    [[nodiscard]] QChar at(qsizetype offset = 0) const {
        return m_at + offset < m_text.size() ? m_text[m_at + offset] : QChar();
    }
    TokenKind skip();
    TokenKind skipQuoted(QChar close, TokenKind kind, bool isDoubled);
    TokenKind skipLineComment();
    TokenKind skipBlockComment();
    TokenKind skipNumber();
    TokenKind skipOperator();
    void skipDigits();

    QStringView m_text;
    qsizetype m_at = 0;
};

Token Scanner::next() {
    const qsizetype start = m_at;
    const TokenKind kind = skip();
    return {kind, m_text.sliced(start, m_at - start)};
}

TokenKind Scanner::skip() {
    const QChar first = at();
    if (isBlank(first)) {
        while (!isAtEnd() && isBlank(at())) ++m_at;
        return TokenKind::Blank;
    }
    if (first == u'-' && at(1) == u'-') return skipLineComment();
    if (first == u'/' && at(1) == u'*') return skipBlockComment();
    if (first == u'\'') return skipQuoted(first, TokenKind::Text, true);
    if (first == u'"' || first == u'`') return skipQuoted(first, TokenKind::Name, true);
    if (first == u'[') return skipQuoted(u']', TokenKind::Name, false);
    if (isDigit(first) || (first == u'.' && isDigit(at(1)))) return skipNumber();
    if (isWordPart(first)) {
        while (!isAtEnd() && isWordPart(at())) ++m_at;
        return TokenKind::Word;
    }
    return skipOperator();
}

TokenKind Scanner::skipQuoted(QChar close, TokenKind kind, bool isDoubled) {
    for (++m_at; !isAtEnd(); ++m_at) {
        if (at() != close) continue;
        ++m_at;
        if (!isDoubled || at() != close) return kind;
    }
    return TokenKind::Unfinished;
}

TokenKind Scanner::skipLineComment() {
    while (!isAtEnd() && at() != u'\n') ++m_at;
    return TokenKind::Comment;
}

TokenKind Scanner::skipBlockComment() {
    const qsizetype end = m_text.indexOf(u"*/", m_at + 2);
    m_at = end < 0 ? m_text.size() : end + 2;
    return TokenKind::Comment;
}

void Scanner::skipDigits() {
    while (isDigit(at())) ++m_at;
}

TokenKind Scanner::skipNumber() {
    if (at() == u'0' && (at(1) == u'x' || at(1) == u'X')) {
        while (!isAtEnd() && isWordPart(at())) ++m_at;
        return TokenKind::Number;
    }
    skipDigits();
    if (at() == u'.') {
        ++m_at;
        skipDigits();
    }
    const bool hasSign = at(1) == u'+' || at(1) == u'-';
    if ((at() == u'e' || at() == u'E') && isDigit(at(hasSign ? 2 : 1))) {
        m_at += hasSign ? 2 : 1;
        skipDigits();
    }
    // Letters behind the digits belong to the bad number, which the database then names whole.
    while (!isAtEnd() && isWordPart(at())) ++m_at;
    return TokenKind::Number;
}

TokenKind Scanner::skipOperator() {
    static constexpr QStringView kPairs[] = {u"<=", u">=", u"<>", u"!=", u"==", u"||", u"<<", u">>", u"->"};
    const QStringView two = m_text.sliced(m_at, qMin<qsizetype>(2, m_text.size() - m_at));
    for (const QStringView pair : kPairs) {
        if (two != pair) continue;
        m_at += 2;
        return TokenKind::Operator;
    }
    ++m_at;
    return TokenKind::Operator;
}

}  // namespace

QList<Token> tokenize(QStringView text) {
    QList<Token> tokens;
    for (Scanner scanner(text); !scanner.isAtEnd();) tokens.append(scanner.next());
    return tokens;
}

}  // namespace velcoran::sqlite
