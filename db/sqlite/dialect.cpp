#include "dialect.h"

#include "tokens.h"

#include <algorithm>
#include <array>
#include <optional>
#include <vector>

namespace velcoran::sqlite {

using namespace Qt::StringLiterals;

namespace {

/// Words that end an expression: what stands on their two sides is not added up.
constexpr QStringView kBoundaryWords[] = {
    u"all",       u"and",  u"as",     u"asc",    u"between", u"by",   u"collate", u"cross",  u"desc",  u"distinct",
    u"else",      u"end",  u"except", u"exists", u"from",    u"full", u"group",   u"having", u"in",    u"inner",
    u"intersect", u"is",   u"join",   u"like",   u"limit",   u"not",  u"on",      u"or",     u"order", u"outer",
    u"select",    u"then", u"top",    u"union",  u"values",  u"when", u"where",   u"with"};

/// Functions whose result is a text.
constexpr QStringView kTextFunctions[] = {u"day_text", u"lower",  u"ltrim", u"replace", u"rtrim",
                                          u"str",      u"substr", u"trim",  u"upper"};

constexpr QStringView kTextTypes[] = {u"nvarchar", u"varchar", u"nchar", u"char"};

constexpr QStringView kDayFunction = u"day_text";
constexpr QStringView kDayStyle = u"103";

template <std::size_t Count>
bool isOneOf(const Token& token, const QStringView (&words)[Count]) {
    return token.kind == TokenKind::Word &&
           std::any_of(std::begin(words), std::end(words), [&](QStringView word) { return token.isWord(word); });
}

/// A token on its way to the new text.
struct Piece {
    Token token;
    bool isDropped = false;
    QString replacement = {};  ///< what is written instead, when it is not empty
};

/// Rewrites CONVERT(type, x, 103) in place: the type, the style and their commas are dropped.
class DayConversions {
public:
    explicit DayConversions(std::vector<Piece>& pieces) : m_pieces(pieces), m_partner(pieces.size(), kNone) {
        matchParentheses();
    }

    void rewriteAll() {
        for (std::size_t i = 0; i < m_pieces.size(); ++i)
            if (m_pieces[i].token.isWord(u"convert")) rewriteAt(i);
    }

private:
    static constexpr std::size_t kNone = static_cast<std::size_t>(-1);

    void matchParentheses();
    void rewriteAt(std::size_t word);
    [[nodiscard]] std::size_t meaningfulAfter(std::size_t at) const;
    [[nodiscard]] std::vector<std::size_t> commasIn(std::size_t open) const;
    [[nodiscard]] std::optional<QString> lengthOfType(std::size_t open, std::size_t comma) const;
    [[nodiscard]] bool isDayStyle(std::size_t comma, std::size_t close) const;
    void drop(std::size_t first, std::size_t end) {
        for (std::size_t i = first; i < end; ++i) m_pieces[i].isDropped = true;
    }

    std::vector<Piece>& m_pieces;
    std::vector<std::size_t> m_partner;  ///< of each "(" the ")" that closes it
};

void DayConversions::matchParentheses() {
    std::vector<std::size_t> open;
    for (std::size_t i = 0; i < m_pieces.size(); ++i) {
        if (m_pieces[i].token.isOperator(u"(")) open.push_back(i);
        if (!m_pieces[i].token.isOperator(u")") || open.empty()) continue;
        m_partner[open.back()] = i;
        open.pop_back();
    }
}

std::size_t DayConversions::meaningfulAfter(std::size_t at) const {
    for (++at; at < m_pieces.size(); ++at)
        if (m_pieces[at].token.isMeaningful()) return at;
    return m_pieces.size();
}

std::vector<std::size_t> DayConversions::commasIn(std::size_t open) const {
    std::vector<std::size_t> commas;
    for (std::size_t i = open + 1; i < m_partner[open]; ++i) {
        if (m_pieces[i].token.isOperator(u",")) commas.push_back(i);
        if (m_pieces[i].token.isOperator(u"(")) i = m_partner[i];
    }
    return commas;
}

/// Length of the character type that stands there, empty for one without; nothing for what is no character type.
std::optional<QString> DayConversions::lengthOfType(std::size_t open, std::size_t comma) const {
    QList<Token> tokens;
    for (std::size_t i = open + 1; i < comma; ++i)
        if (m_pieces[i].token.isMeaningful()) tokens.append(m_pieces[i].token);
    if (tokens.isEmpty() || !isOneOf(tokens[0], kTextTypes)) return std::nullopt;
    if (tokens.size() == 1) return QString();
    if (tokens.size() != 4 || !tokens[1].isOperator(u"(") || !tokens[3].isOperator(u")")) return std::nullopt;
    if (tokens[2].isWord(u"max")) return QString();
    if (tokens[2].kind != TokenKind::Number) return std::nullopt;
    return tokens[2].text.toString();
}

bool DayConversions::isDayStyle(std::size_t comma, std::size_t close) const {
    const std::size_t style = meaningfulAfter(comma);
    return style < close && m_pieces[style].token.text == kDayStyle && meaningfulAfter(style) == close;
}

void DayConversions::rewriteAt(std::size_t word) {
    const std::size_t open = meaningfulAfter(word);
    if (open == m_pieces.size() || m_partner[open] == kNone) return;
    const std::size_t close = m_partner[open];
    const std::vector<std::size_t> commas = commasIn(open);
    if (commas.size() != 2 || !isDayStyle(commas[1], close)) return;
    const std::optional<QString> length = lengthOfType(open, commas[0]);
    if (!length) return;
    m_pieces[word].replacement = kDayFunction.toString();
    drop(open + 1, commas[0] + 1);
    drop(commas[1], close);
    if (!length->isEmpty()) m_pieces[close].replacement = u", "_s + *length + u')';
}

/// Finds the "+" that join texts. Parentheses and CASE are kept on a stack of their own, so that no statement is nested
/// too deeply.
class TextSums {
public:
    explicit TextSums(std::vector<Piece>& pieces) : m_pieces(pieces) { m_frames.emplace_back(); }

    void rewriteAll() {
        for (std::size_t i = 0; i < m_pieces.size(); ++i)
            if (!m_pieces[i].isDropped && m_pieces[i].token.isMeaningful()) take(i);
        while (!m_frames.empty()) leave();
    }

private:
    /// One level of parentheses, or one CASE.
    struct Frame {
        bool isCase = false;
        bool isCall = false;          ///< arguments of a function
        bool isTextFunction = false;  ///< of one whose result is a text
        bool isResultOfCase = false;  ///< behind THEN or ELSE
        bool givesText = false;       ///< a result of the CASE is a text
        bool hasBoundary = false;     ///< more than one plain expression
        bool isText = false;          ///< the expression that is being read has a text in it
        std::vector<std::size_t> pluses = {};
    };

    void take(std::size_t at);
    bool takeWord(const Token& token);
    void takeOperator(const Token& token, std::size_t at);
    void boundary();
    void endExpression();
    void enter(Frame frame) { m_frames.push_back(std::move(frame)); }
    void leave();

    std::vector<Piece>& m_pieces;
    std::vector<Frame> m_frames;
    bool m_isOperandBefore = false;  ///< what was read last can stand before a binary operator
    bool m_isNameBefore = false;     ///< a parenthesis would hold its arguments
    bool m_isTextFunctionBefore = false;
};

void TextSums::take(std::size_t at) {
    const Token& token = m_pieces[at].token;
    const bool isReplaced = token.kind == TokenKind::Word && m_pieces[at].replacement == kDayFunction;
    switch (token.kind) {
        case TokenKind::Word:
            m_isNameBefore = takeWord(token);
            m_isTextFunctionBefore = isReplaced || isOneOf(token, kTextFunctions);
            return;
        case TokenKind::Operator:
            takeOperator(token, at);
            break;
        case TokenKind::Text:
            m_frames.back().isText = true;
            m_isOperandBefore = true;
            break;
        default:
            m_isOperandBefore = true;
            break;
    }
    m_isNameBefore = token.kind == TokenKind::Name;
    m_isTextFunctionBefore = false;
}

/// @return true for a name
bool TextSums::takeWord(const Token& token) {
    if (token.isWord(u"case")) {
        enter({.isCase = true});
        m_isOperandBefore = false;
        return false;
    }
    if (token.isWord(u"end") && m_frames.back().isCase) {
        leave();
        m_isOperandBefore = true;
        return false;
    }
    if (!isOneOf(token, kBoundaryWords)) {
        m_isOperandBefore = true;
        return true;
    }
    boundary();
    m_frames.back().isResultOfCase = m_frames.back().isCase && (token.isWord(u"then") || token.isWord(u"else"));
    return false;
}

void TextSums::takeOperator(const Token& token, std::size_t at) {
    if (token.isOperator(u"(")) {
        enter({.isCall = m_isNameBefore, .isTextFunction = m_isTextFunctionBefore});
        m_isOperandBefore = false;
    } else if (token.isOperator(u")")) {
        while (m_frames.size() > 1 && m_frames.back().isCase) leave();
        if (m_frames.size() > 1) leave();
        m_isOperandBefore = true;
    } else if (token.isOperator(u"+")) {
        if (m_isOperandBefore) m_frames.back().pluses.push_back(at);
        m_isOperandBefore = false;
    } else if (token.isOperator(u"||")) {
        m_frames.back().isText = true;
        m_isOperandBefore = false;
    } else if (QStringView(u".-*/%").contains(token.text)) {
        m_isOperandBefore = false;
    } else {
        boundary();
    }
}

/// Ends the expression that is being read: its "+" are decided.
void TextSums::endExpression() {
    Frame& frame = m_frames.back();
    if (frame.isText)
        for (const std::size_t plus : frame.pluses) m_pieces[plus].replacement = u"||"_s;
    frame.pluses.clear();
    if (frame.isText && frame.isResultOfCase) frame.givesText = true;
}

void TextSums::boundary() {
    endExpression();
    Frame& frame = m_frames.back();
    frame.isText = false;
    frame.hasBoundary = true;
    m_isOperandBefore = false;
}

void TextSums::leave() {
    endExpression();
    const Frame frame = std::move(m_frames.back());
    m_frames.pop_back();
    if (m_frames.empty()) return;
    const bool isPlainText = !frame.isCase && !frame.isCall && !frame.hasBoundary && frame.isText;
    if (frame.isTextFunction || frame.givesText || isPlainText) m_frames.back().isText = true;
}

/// Name of an entry "a.b.[c]"; empty for any other.
QString nameOfEntry(const QList<Token>& entry) {
    for (qsizetype i = 0; i < entry.size(); ++i) {
        const bool isName = entry[i].kind == TokenKind::Word || entry[i].kind == TokenKind::Name;
        if (i % 2 == 0 ? !isName : !entry[i].isOperator(u".")) return {};
    }
    if (entry.size() % 2 == 0) return {};
    const Token& last = entry.last();
    return (last.kind == TokenKind::Name ? last.text.sliced(1, last.text.size() - 2) : last.text).toString();
}

}  // namespace

QStringList writtenColumnNames(const QString& text) {
    QList<Token> tokens;
    for (const Token& token : tokenize(text))
        if (token.isMeaningful()) tokens.append(token);
    if (tokens.isEmpty() || !tokens.first().isWord(u"select")) return {};
    tokens.removeFirst();
    if (!tokens.isEmpty() && (tokens.first().isWord(u"distinct") || tokens.first().isWord(u"all")))
        tokens.removeFirst();
    QStringList names;
    QList<Token> entry;
    int depth = 0;
    for (const Token& token : tokens) {
        if (token.isOperator(u"(")) ++depth;
        if (token.isOperator(u")")) --depth;
        const bool isEnd = depth == 0 && token.isWord(u"from");
        if (isEnd || (depth == 0 && token.isOperator(u","))) {
            names.append(nameOfEntry(entry));
            entry.clear();
        } else {
            entry.append(token);
        }
        if (entry.size() == 1 && token.isOperator(u"*")) return {};
        if (isEnd) return names;
    }
    names.append(nameOfEntry(entry));
    return names;
}

QString rewrite(const QString& text) {
    std::vector<Piece> pieces;
    for (const Token& token : tokenize(text)) pieces.push_back({token});
    DayConversions(pieces).rewriteAll();
    TextSums(pieces).rewriteAll();
    QString result;
    result.reserve(text.size());
    for (const Piece& piece : pieces) {
        if (piece.isDropped) continue;
        if (piece.replacement.isEmpty()) {
            result += piece.token.text;
        } else {
            result += piece.replacement;
        }
    }
    return result;
}

bool isEmptyStatement(QStringView text) {
    const QList<Token> tokens = tokenize(text);
    return std::all_of(tokens.begin(), tokens.end(),
                       [](const Token& token) { return !token.isMeaningful() || token.isOperator(u";"); });
}

}  // namespace velcoran::sqlite
