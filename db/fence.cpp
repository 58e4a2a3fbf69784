#include "fence.h"

#include "forwarding.h"

#include <algorithm>
#include <string>
#include <string_view>

namespace velcoran::db {

using namespace Qt::StringLiterals;

namespace {

/// Reserved words that the window's statements are made of, SELECT apart. Sorted.
constexpr std::u16string_view kAllowed[] = {
    u"AND", u"AS",   u"ASC",   u"BETWEEN", u"BY",    u"CASE",  u"CONVERT", u"DESC",  u"ELSE",
    u"END", u"FROM", u"GROUP", u"HAVING",  u"IN",    u"INNER", u"IS",      u"JOIN",  u"LIKE",
    u"NOT", u"NULL", u"ON",    u"OR",      u"ORDER", u"THEN",  u"WHEN",    u"WHERE",
};

/// The reserved words of SQL Server's dialect, as its reference lists them. Sorted.
constexpr std::u16string_view kReserved[] = {
    u"ADD",
    u"ALL",
    u"ALTER",
    u"AND",
    u"ANY",
    u"AS",
    u"ASC",
    u"AUTHORIZATION",
    u"BACKUP",
    u"BEGIN",
    u"BETWEEN",
    u"BREAK",
    u"BROWSE",
    u"BULK",
    u"BY",
    u"CASCADE",
    u"CASE",
    u"CHECK",
    u"CHECKPOINT",
    u"CLOSE",
    u"CLUSTERED",
    u"COALESCE",
    u"COLLATE",
    u"COLUMN",
    u"COMMIT",
    u"COMPUTE",
    u"CONSTRAINT",
    u"CONTAINS",
    u"CONTAINSTABLE",
    u"CONTINUE",
    u"CONVERT",
    u"CREATE",
    u"CROSS",
    u"CURRENT",
    u"CURRENT_DATE",
    u"CURRENT_TIME",
    u"CURRENT_TIMESTAMP",
    u"CURRENT_USER",
    u"CURSOR",
    u"DATABASE",
    u"DBCC",
    u"DEALLOCATE",
    u"DECLARE",
    u"DEFAULT",
    u"DELETE",
    u"DENY",
    u"DESC",
    u"DISK",
    u"DISTINCT",
    u"DISTRIBUTED",
    u"DOUBLE",
    u"DROP",
    u"DUMP",
    u"ELSE",
    u"END",
    u"ERRLVL",
    u"ESCAPE",
    u"EXCEPT",
    u"EXEC",
    u"EXECUTE",
    u"EXISTS",
    u"EXIT",
    u"EXTERNAL",
    u"FETCH",
    u"FILE",
    u"FILLFACTOR",
    u"FOR",
    u"FOREIGN",
    u"FREETEXT",
    u"FREETEXTTABLE",
    u"FROM",
    u"FULL",
    u"FUNCTION",
    u"GOTO",
    u"GRANT",
    u"GROUP",
    u"HAVING",
    u"HOLDLOCK",
    u"IDENTITY",
    u"IDENTITYCOL",
    u"IDENTITY_INSERT",
    u"IF",
    u"IN",
    u"INDEX",
    u"INNER",
    u"INSERT",
    u"INTERSECT",
    u"INTO",
    u"IS",
    u"JOIN",
    u"KEY",
    u"KILL",
    u"LEFT",
    u"LIKE",
    u"LINENO",
    u"LOAD",
    u"MERGE",
    u"NATIONAL",
    u"NOCHECK",
    u"NONCLUSTERED",
    u"NOT",
    u"NULL",
    u"NULLIF",
    u"OF",
    u"OFF",
    u"OFFSETS",
    u"ON",
    u"OPEN",
    u"OPENDATASOURCE",
    u"OPENQUERY",
    u"OPENROWSET",
    u"OPENXML",
    u"OPTION",
    u"OR",
    u"ORDER",
    u"OUTER",
    u"OVER",
    u"PERCENT",
    u"PIVOT",
    u"PLAN",
    u"PRECISION",
    u"PRIMARY",
    u"PRINT",
    u"PROC",
    u"PROCEDURE",
    u"PUBLIC",
    u"RAISERROR",
    u"READ",
    u"READTEXT",
    u"RECONFIGURE",
    u"REFERENCES",
    u"REPLICATION",
    u"RESTORE",
    u"RESTRICT",
    u"RETURN",
    u"REVERT",
    u"REVOKE",
    u"RIGHT",
    u"ROLLBACK",
    u"ROWCOUNT",
    u"ROWGUIDCOL",
    u"RULE",
    u"SAVE",
    u"SCHEMA",
    u"SECURITYAUDIT",
    u"SELECT",
    u"SEMANTICKEYPHRASETABLE",
    u"SEMANTICSIMILARITYDETAILSTABLE",
    u"SEMANTICSIMILARITYTABLE",
    u"SESSION_USER",
    u"SET",
    u"SETUSER",
    u"SHUTDOWN",
    u"SOME",
    u"STATISTICS",
    u"SYSTEM_USER",
    u"TABLE",
    u"TABLESAMPLE",
    u"TEXTSIZE",
    u"THEN",
    u"TO",
    u"TOP",
    u"TRAN",
    u"TRANSACTION",
    u"TRIGGER",
    u"TRUNCATE",
    u"TRY_CONVERT",
    u"TSEQUAL",
    u"UNION",
    u"UNIQUE",
    u"UNPIVOT",
    u"UPDATE",
    u"UPDATETEXT",
    u"USE",
    u"USER",
    u"VALUES",
    u"VARYING",
    u"VIEW",
    u"WAITFOR",
    u"WHEN",
    u"WHERE",
    u"WHILE",
    u"WITH",
    u"WITHIN",
    u"WRITETEXT",
};

static_assert(std::ranges::is_sorted(kAllowed) && std::ranges::is_sorted(kReserved));

template <std::size_t count>
bool stands(const std::u16string_view (&words)[count], QStringView word) {
    return std::ranges::binary_search(words, std::u16string_view(word.utf16(), static_cast<std::size_t>(word.size())));
}

bool isDigit(char32_t character) { return character >= U'0' && character <= U'9'; }
bool isBlank(char32_t character) {
    return character == U' ' || character == U'\t' || character == U'\r' || character == U'\n';
}
bool isWordPart(char32_t character) {
    return isDigit(character) || QChar::isLetter(character) || character == U'_' || character == U'@' ||
           character == U'#' || character == U'$';
}

bool isAscii(std::u32string_view text) {
    return std::ranges::all_of(text, [](char32_t character) { return character < 0x80; });
}
/// In capitals, look-alikes of ASCII letters made such.
QString upperWord(std::u32string_view word) {
    return QString::fromUcs4(word.data(), static_cast<qsizetype>(word.size()))
        .normalized(QString::NormalizationForm_KC)
        .toUpper();
}

/// Signs that no statement of the window has. A backslash goes on with a number on the next line.
constexpr std::u16string_view kForbiddenSigns = u"{}`\\";

class Scanner {
public:
    explicit Scanner(QStringView statement) : m_text(statement.toString().toStdU32String()) {}

    std::optional<QString> refusal() {
        while (!m_refusal && m_at < m_text.size()) step();
        if (!m_refusal && !m_hasSelect) refuse(u"textul nu este o interogare"_s);
        return m_refusal;
    }

private:
    [[nodiscard]] char32_t peek(std::size_t ahead = 0) const {
        return m_at + ahead < m_text.size() ? m_text[m_at + ahead] : U'\0';
    }
    void refuse(const QString& reason) {
        m_refusal = u"Interogarea a fost oprită înainte de a ajunge la baza de date: %1."_s.arg(reason);
    }

    void step() {
        const char32_t character = peek();
        if (isBlank(character)) {
            ++m_at;
        } else if (m_isEnded) {
            refuse(u"după „;” mai urmează text"_s);
        } else if (isWordPart(character)) {
            word();
        } else if (!m_hasSelect) {
            refuse(u"textul nu începe cu SELECT"_s);
        } else {
            sign(character);
        }
    }

    void sign(char32_t character) {
        switch (character) {
            case U'\'':
            case U'"':
                return enclosed(character, u"un apostrof sau ghilimele fără pereche"_s);
            case U'[':
                return enclosed(U']', u"o paranteză dreaptă fără pereche"_s);
            case U']':
                return refuse(u"o paranteză dreaptă fără pereche"_s);
            case U';':
                m_isEnded = true;
                break;
            case U'-':
                if (peek(1) == U'-') return refuse(u"conține un comentariu"_s);
                break;
            case U'/':
                if (peek(1) == U'*') return refuse(u"conține un comentariu"_s);
                break;
            default:
                if (character < U' ' || character > U'~' ||
                    kForbiddenSigns.find(static_cast<char16_t>(character)) != std::u16string_view::npos)
                    return refuseSign();
        }
        ++m_at;
    }

    /// A text in quotes or a name in brackets; the closing sign twice stands for itself.
    void enclosed(char32_t closing, const QString& whenOpen) {
        for (++m_at; m_at < m_text.size(); ++m_at) {
            if (m_text[m_at] != closing) continue;
            if (peek(1) != closing) {
                ++m_at;
                return;
            }
            ++m_at;
        }
        refuse(whenOpen);
    }

    void word() {
        const std::size_t start = m_at;
        while (m_at < m_text.size() && isWordPart(m_text[m_at])) ++m_at;
        const std::u32string_view written = std::u32string_view(m_text).substr(start, m_at - start);
        const QString word = upperWord(written);
        if (!m_hasSelect) {
            m_hasSelect = true;
            // Other letters that look alike would make it a name, and a name alone calls a procedure.
            if (word != u"SELECT" || !isAscii(written)) refuse(u"textul nu începe cu SELECT"_s);
            return;
        }
        if (stands(kReserved, word) && !stands(kAllowed, word)) return refuseWord(word);
        if (word == u"CASE") ++m_openCases;
        // Without a CASE to close it would begin a statement: END CONVERSATION.
        if (word == u"END" && m_openCases-- == 0) return refuseWord(word);
        const bool isNumber = isDigit(written.front()) || (m_numberEnd + 1 == start && m_text[m_numberEnd] == U'.');
        if (isNumber) glued(word);
        if (isNumber) m_numberEnd = m_at;
        // Variables and money; $$ quotes on other servers, as a letter before an apostrophe changes what follows there.
        const bool isName = !isNumber && written.front() != U'@' && written.front() != U'$';
        const bool isOdd = !isName && written.find_first_of(U"@$") != std::u32string_view::npos;
        const bool isPrefix = (peek() == U'\'' || peek() == U'"') && word != u"N";
        if (isOdd || isPrefix) refuseSign();
    }

    /// The server ends a number where its digits end, and reads on: 1DELETE is a number and a word.
    void glued(QStringView number) {
        for (qsizetype from = 1; from < number.size(); ++from)
            if (stands(kReserved, number.mid(from))) return refuseWord(number.mid(from));
    }
    void refuseSign() { refuse(u"conține un semn nepermis"_s); }
    void refuseWord(QStringView word) { refuse(u"conține cuvântul %1"_s.arg(word)); }

    std::u32string m_text;
    std::size_t m_at = 0;
    bool m_hasSelect = false;
    bool m_isEnded = false;
    int m_openCases = 0;
    std::size_t m_numberEnd = std::u32string::npos - 1;  ///< where the last number of digits ended
    std::optional<QString> m_refusal;
};

class FencedConnection final : public ForwardingConnection {
public:
    using ForwardingConnection::ForwardingConnection;

private:
    void admit(const QString& text, Via) override {
        if (const std::optional<QString> refusal = fenceRefusal(text))
            throw base::Error(base::kStatementError, *refusal);
    }
};

}  // namespace

std::optional<QString> fenceRefusal(QStringView statement) { return Scanner(statement).refusal(); }

com::Ref<IConnection> fenceConnection(com::Ref<IConnection> connection) {
    if (!connection) return connection;
    return com::Ref<IConnection>::adopt(com::makeObject<FencedConnection>(std::move(connection)).release());
}

}  // namespace velcoran::db
