#include "statement_cases.h"

#include "filters/lookup_fields.h"
#include "support/test_data.h"

#include <gtest/gtest.h>

#include <QMap>

namespace velcoran::tests {

using namespace Qt::StringLiterals;
using filters::FilterState;

namespace {

FilterState plainState() {
    FilterState state;
    state.deLaData = QDate(2026, 3, 1);
    state.laData = QDate(2026, 3, 15);
    return state;
}

bool setText(FilterState& state, const QString& member, const QString& value) {
    using filters::CodeVariable;
    const QMap<QString, QString*> members{{u"sSoc"_s, &state.sSoc},
                                          {u"sCodProdus"_s, &state.codes[CodeVariable::sCodProdus]},
                                          {u"sCodProducator"_s, &state.codes[CodeVariable::sCodProducator]},
                                          {u"sCodClient"_s, &state.codes[CodeVariable::sCodClient]},
                                          {u"sCodAgent"_s, &state.codes[CodeVariable::sCodAgent]},
                                          {u"cmbTipRaport"_s, &state.cmbTipRaport},
                                          {u"cmbSortare"_s, &state.cmbSortare},
                                          {u"cmbCategorie"_s, &state.cmbCategorie}};
    if (member == u"sTipRaport") {
        state.sTipRaport = value;
        return true;
    }
    if (const auto field = filters::lookupFieldNamed(member)) {
        state.fields[*field].text = value;
        return true;
    }
    if (!members.contains(member)) return false;
    *members.value(member) = value;
    return true;
}

bool setOther(FilterState& state, const QString& member, const QString& value) {
    if (member == u"depozite") {
        state.depozite = value.split(u'|');
    } else if (member == u"cmbCategorieIndex") {
        state.cmbCategorieIndex = value.toInt();
    } else if (member == u"chkTotale") {
        state.chkTotale = value == u"true";
    } else if (member == u"chkLohn") {
        state.chkLohn = value == u"true";
    } else if (member == u"deLaData") {
        state.deLaData = QDate::fromString(value, Qt::ISODate);
    } else if (member == u"laData") {
        state.laData = QDate::fromString(value, Qt::ISODate);
    } else {
        return false;
    }
    return true;
}

class Reader {
public:
    void read(const QString& line) {
        if (line.isEmpty() || line.startsWith(u'#')) return;
        if (line.startsWith(u"define ")) {
            m_target = &m_definitions[line.sliced(7)];
        } else if (line.startsWith(u"= ")) {
            m_cases.push_back({line.sliced(2), plainState(), std::nullopt, QString()});
            m_target = nullptr;
        } else if (line.startsWith(u'|') && line.endsWith(u'|') && line.size() > 1) {
            append(line.sliced(1).chopped(1));
        } else if (line.startsWith(u'@') && m_definitions.contains(line.sliced(1))) {
            append(m_definitions.value(line.sliced(1)));
        } else {
            readMember(line);
        }
    }
    std::vector<StatementCase> takeCases() { return std::move(m_cases); }

private:
    void append(const QString& piece) {
        if (m_target != nullptr) {
            *m_target += piece;
        } else if (!m_cases.empty()) {
            m_cases.back().text += piece;
        }
    }
    void readMember(const QString& line) {
        const qsizetype equals = line.indexOf(u'=');
        ASSERT_TRUE(equals > 0 && !m_cases.empty()) << "a line that says nothing: " << line.toStdString();
        const QString member = line.first(equals);
        QString value = line.sliced(equals + 1);
        if (value.startsWith(u'|') && value.endsWith(u'|')) value = value.sliced(1).chopped(1);
        StatementCase& one = m_cases.back();
        if (member == u"lookup") {
            one.lookup = filters::lookupFieldNamed(value);
            ASSERT_TRUE(one.lookup.has_value()) << line.toStdString();
            return;
        }
        ASSERT_TRUE(setText(one.state, member, value) || setOther(one.state, member, value)) << line.toStdString();
    }

    std::vector<StatementCase> m_cases;
    QMap<QString, QString> m_definitions;
    QString* m_target = nullptr;
};

}  // namespace

std::vector<StatementCase> readStatementCases(const QString& file) {
    Reader reader;
    const QString contents = QString::fromUtf8(readData(u"statements/"_s + file));
    for (const QString& line : contents.split(u'\n')) reader.read(line);
    return reader.takeCases();
}

}  // namespace velcoran::tests
