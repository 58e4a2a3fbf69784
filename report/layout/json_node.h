#pragma once

#include <QJsonArray>
#include <QJsonObject>
#include <QJsonValue>
#include <QString>
#include <QStringList>

#include <optional>
#include <span>

namespace velcoran::report {

/// A word of a definition and what it stands for.
template <class Value>
struct JsonWord {
    QStringView word;
    Value value;
};

/// An object of a definition with its path, read key by key; every wrong value is an Error that names the path.
class JsonNode {
public:
    JsonNode(QJsonObject object, QString path) : m_object(std::move(object)), m_path(std::move(path)) {}

    /// @throws Error kInvalidProcedureCall: "path: what"
    [[noreturn]] void fail(const QString& what) const;
    [[nodiscard]] const QString& path() const { return m_path; }
    [[nodiscard]] QString pathOf(const QString& key) const;
    [[nodiscard]] bool has(const QString& key) const { return m_object.contains(key); }
    [[nodiscard]] QStringList keys() const { return m_object.keys(); }

    [[nodiscard]] QString text(const QString& key) const;
    [[nodiscard]] int number(const QString& key, int least, int most) const;
    [[nodiscard]] int number(const QString& key, int least, int most, int otherwise) const;
    [[nodiscard]] double decimal(const QString& key, double least, double most, double otherwise) const;
    [[nodiscard]] bool flag(const QString& key, bool otherwise) const;
    [[nodiscard]] JsonNode object(const QString& key) const;
    [[nodiscard]] QJsonArray array(const QString& key) const;

    template <class Value>
    [[nodiscard]] Value word(const QString& key, std::span<const JsonWord<Value>> words) const {
        const QString found = text(key);
        QStringList known;
        for (const JsonWord<Value>& row : words) {
            if (row.word == found) return row.value;
            known.append(row.word.toString());
        }
        failWord(key, found, known);
    }
    template <class Value>
    [[nodiscard]] Value word(const QString& key, std::span<const JsonWord<Value>> words, Value otherwise) const {
        return has(key) ? word(key, words) : otherwise;
    }
    /// Fails for a key that is not among the known ones: a slip of the pen would go unseen otherwise.
    void allowOnly(const QStringList& known) const;

private:
    [[nodiscard]] QJsonValue value(const QString& key) const;
    [[noreturn]] void failWord(const QString& key, const QString& found, const QStringList& known) const;

    QJsonObject m_object;
    QString m_path;
};

}  // namespace velcoran::report
