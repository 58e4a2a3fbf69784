#include "connection_text.h"

#include "base/error.h"

#include <QFile>
#include <QRegularExpression>

#include <algorithm>

namespace velcoran::odbc {

using namespace Qt::StringLiterals;

namespace {

const QString& hidden() {
    static const QString text = u"***"_s;
    return text;
}

/// A secret shorter than this is replaced only where it stands alone: a password "a" would otherwise eat every message.
constexpr qsizetype kShortSecret = 4;

/// A keyword of a connection text with its value, bare or in braces (a closing brace inside is doubled).
const QRegularExpression& pairPattern() {
    static const QRegularExpression pattern(u"([^=;{}]+)=\\s*(\\{(?:[^}]|\\}\\})*\\}|[^;]*)"_s);
    return pattern;
}

/// Keywords that drivers use for secrets, in any text.
const QRegularExpression& secretPattern() {
    static const QRegularExpression pattern(
        u"((?:\\w|\\b)*(?:PWD|PASSWORD|PASSPHRASE|ACCESS ?TOKEN|SECRET)\\w*\\s*=\\s*)(\\{(?:[^}]|\\}\\})*\\}|[^;\\s]+)"_s,
        QRegularExpression::CaseInsensitiveOption);
    return pattern;
}

bool isSecretKeyword(const QString& keyword) {
    static const QRegularExpression pattern(u"PWD|PASSWORD|PASSPHRASE|TOKEN|SECRET"_s,
                                            QRegularExpression::CaseInsensitiveOption);
    return pattern.match(keyword).hasMatch();
}

QString withoutBraces(const QString& value) {
    if (value.size() < 2 || !value.startsWith(u'{') || !value.endsWith(u'}')) return value;
    return value.mid(1, value.size() - 2).replace(u"}}"_s, u"}"_s);
}

QString readFile(const QString& name) {
    QFile file(name);
    if (!file.open(QIODevice::ReadOnly)) {
        throw base::Error(base::kPathAccess,
                          u"Cannot read the connection file \"%1\": %2"_s.arg(name, file.errorString()));
    }
    QString text = QString::fromUtf8(file.readAll());
    if (text.startsWith(QChar(QChar::ByteOrderMark))) text.remove(0, 1);
    return text;
}

QString readVariable(const QString& name) {
    const QByteArray key = name.toLocal8Bit();
    if (!qEnvironmentVariableIsSet(key.constData())) {
        throw base::Error(base::kInvalidProcedureCall,
                          u"The environment variable \"%1\" with the connection text is not set"_s.arg(name));
    }
    return qEnvironmentVariable(key.constData());
}

}  // namespace

QString resolveConnectionText(const QString& argument) {
    constexpr QStringView kVariable = u"env:";
    QString text = argument;
    QString place = u"The connection text is empty"_s;
    if (argument.startsWith(u'@')) {
        text = readFile(argument.mid(1));
        place = u"The connection file \"%1\" is empty"_s.arg(argument.mid(1));
    } else if (argument.startsWith(kVariable)) {
        text = readVariable(argument.mid(kVariable.size()));
        place = u"The environment variable \"%1\" is empty"_s.arg(argument.mid(kVariable.size()));
    }
    text = text.remove(u'\r').split(u'\n', Qt::SkipEmptyParts).join(QString()).trimmed();
    if (text.isEmpty()) throw base::Error(base::kInvalidProcedureCall, place);
    return text;
}

Secrets::Secrets(const QString& connectionText) {
    auto pairs = pairPattern().globalMatch(connectionText);
    while (pairs.hasNext()) {
        const QRegularExpressionMatch pair = pairs.next();
        if (!isSecretKeyword(pair.captured(1))) continue;
        const QString written = pair.captured(2).trimmed();
        for (const QString& value : {written, withoutBraces(written)})
            if (!value.isEmpty() && !m_values.contains(value)) m_values.append(value);
    }
    std::sort(m_values.begin(), m_values.end(),
              [](const QString& one, const QString& other) { return one.size() > other.size(); });
}

QString Secrets::scrub(QString text) const {
    for (const QString& value : m_values) {
        if (value.size() >= kShortSecret) {
            text.replace(value, hidden());
        } else {
            const QString alone = u"(?<!\\w)%1(?!\\w)"_s.arg(QRegularExpression::escape(value));
            text.replace(QRegularExpression(alone, QRegularExpression::UseUnicodePropertiesOption), hidden());
        }
    }
    return text.replace(secretPattern(), u"\\1***"_s);
}

}  // namespace velcoran::odbc
