#include "json_node.h"

#include "base/error.h"

#include <QJsonArray>

namespace velcoran::report {

using namespace Qt::StringLiterals;

void JsonNode::fail(const QString& what) const {
    throw base::Error(base::kInvalidProcedureCall, m_path.isEmpty() ? what : m_path + u": "_s + what);
}

QString JsonNode::pathOf(const QString& key) const { return m_path.isEmpty() ? key : m_path + u'.' + key; }

QJsonValue JsonNode::value(const QString& key) const {
    if (!has(key)) fail(u"\"%1\" is missing"_s.arg(key));
    return m_object.value(key);
}

QString JsonNode::text(const QString& key) const {
    const QJsonValue found = value(key);
    if (!found.isString()) fail(u"\"%1\" must be a text"_s.arg(key));
    return found.toString();
}

int JsonNode::number(const QString& key, int least, int most) const {
    const double found = value(key).toDouble(least - 1.0);
    if (found != static_cast<int>(found) || found < least || found > most) {
        fail(u"\"%1\" must be a whole number from %2 to %3"_s.arg(key).arg(least).arg(most));
    }
    return static_cast<int>(found);
}

int JsonNode::number(const QString& key, int least, int most, int otherwise) const {
    return has(key) ? number(key, least, most) : otherwise;
}

double JsonNode::decimal(const QString& key, double least, double most, double otherwise) const {
    if (!has(key)) return otherwise;
    const double found = value(key).toDouble(least - 1.0);
    if (found < least || found > most) fail(u"\"%1\" must be a number from %2 to %3"_s.arg(key).arg(least).arg(most));
    return found;
}

bool JsonNode::flag(const QString& key, bool otherwise) const {
    if (!has(key)) return otherwise;
    const QJsonValue found = value(key);
    if (!found.isBool()) fail(u"\"%1\" must be true or false"_s.arg(key));
    return found.toBool();
}

JsonNode JsonNode::object(const QString& key) const {
    const QJsonValue found = value(key);
    if (!found.isObject()) fail(u"\"%1\" must be an object"_s.arg(key));
    return {found.toObject(), pathOf(key)};
}

QJsonArray JsonNode::array(const QString& key) const {
    const QJsonValue found = value(key);
    if (!found.isArray()) fail(u"\"%1\" must be a list"_s.arg(key));
    return found.toArray();
}

void JsonNode::failWord(const QString& key, const QString& found, const QStringList& known) const {
    fail(u"\"%1\" is \"%2\", must be one of %3"_s.arg(key, found, known.join(u", "_s)));
}

void JsonNode::allowOnly(const QStringList& known) const {
    const QStringList present = keys();
    for (const QString& key : present) {
        if (!known.contains(key)) fail(u"unknown member \"%1\""_s.arg(key));
    }
}

}  // namespace velcoran::report
