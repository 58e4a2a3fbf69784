#include "hostile_texts.h"

#include "lookup/lookup_request.h"
#include "query/request.h"
#include "query/statement.h"

#include <iterator>

namespace velcoran::tests {

using namespace Qt::StringLiterals;
using filters::CodeVariable;
using filters::FilterState;
using filters::LookupField;

namespace {

constexpr LookupField kFields[] = {
    LookupField::txtProducator,     LookupField::txtTipProdus, LookupField::txtGrupaProdus,
    LookupField::txtSubGrupaProdus, LookupField::txtCodProdus, LookupField::txtTipClient,
    LookupField::txtCatClient,      LookupField::txtCodClient, LookupField::txtCodAgent};

QString reportOf(FilterState state, const QString& entry, bool isTotal) {
    state.cmbTipRaport = entry;
    state.chkTotale = isTotal;
    return query::assembleStatement(state, query::buildRequest(state));
}

/// What a value does once it is out of its apostrophes. None of it may ever pass, however it is written.
const char* const kDeeds[] = {
    "delete from Agenti",
    "DELETE Agenti",
    "; delete from Agenti",
    ";delete from [Linii DocIntE]",
    "drop table Agenti",
    "truncate table An",
    "update Agenti set Inactiv=1",
    "insert into An values (1)",
    "insert An default values",
    "merge Agenti as a using An as b on 1=1 when matched then delete",
    "union select name from sys.objects",
    "union all select 1,2",
    "or Agent in (select Agent from Agenti)",
    "or exists (select 1)",
    "except select 1",
    "intersect select 1",
    "use master",
    "exec xp_cmdshell 'dir'",
    "execute ('drop table An')",
    "or 1=(select 1 from openrowset('a','b','c'))",
    "or 1 in (openquery(srv,'delete from a'))",
    "or a in (opendatasource('a','b').c.d.e)",
    "shutdown",
    "kill 55",
    "waitfor delay '0:0:5'",
    "backup database Firma to disk='x'",
    "restore database Firma from disk='x'",
    "create table x(a int)",
    "alter table An drop column An",
    "grant select on An to public",
    "revoke select on An to raport",
    "deny select on An to raport",
    "declare @a int",
    "set nocount on",
    "if 1=1 print 'a'",
    "while 1=1 print 'a'",
    "begin tran",
    "commit",
    "rollback",
    "goto x",
    "return",
    "dbcc checkdb",
    "checkpoint",
    "reconfigure",
    "raiserror('a',16,1)",
    "bulk insert An from 'x'",
    "into Noua",
    "for xml auto",
    "option (recompile)",
    "with (tablockx)",
    "order by 1 offset 1 rows fetch next 1 rows only",
    "then 1 end)>0 end conversation 'x'",
    "and 1=1drop table An",
    "and 1=1.5e3delete from An",
    "and 1=1.e3delete from An",
    "and 1=0x1Fupdate An set An=1",
    "and 1=$1delete An",
    "and [a]]b]=1 delete An",
    "and \"a\"\"b\"=1 delete An",
    "and N'a''b'='a' delete An",
    "/* a /* b */ c */ delete An",
    "-- delete An",
    "{call x}",
    "{d x} delete An",
    "` delete An `",
    "and a=b\\ delete An",
    "readtext a.b 0 1",
    "writetext a.b 0",
    "setuser 'dbo'",
    "revert",
    "open c",
    "fetch c",
    "deallocate c",
    "load table x",
    "dump database x",
    "disk init",
    "\xc2\xa0",
    "\xc3\x97",
    "\xf0\x9f\x98\x80",
    "\x01",
    "x ; y",
};

const char* const kWaysOut[] = {"'", "')", "x'", "%'", "a' ", "a')\t", "a'\n", "'))", "O''Neil'", "1' or '1'='1' "};
const char* const kBareStarts[] = {"1", "1)", "(1)", "[a]", "'a'", "1.", "dbo.CPP"};
const char* const kWaysBack[] = {"",
                                 ";",
                                 ";--",
                                 "--",
                                 " /*",
                                 " --\n",
                                 " and 'a'='a",
                                 " where ('a'='a",
                                 "; select '",
                                 ";print '",
                                 " or 'x' like '",
                                 " as [x"};

template <class List>
QString any(const List& list, std::mt19937& random) {
    return QString::fromUtf8(list[random() % std::size(list)]);
}

/// The same deed with other letters and blanks.
QString rewritten(const QString& deed, std::mt19937& random) {
    QString text;
    for (const QChar each : deed) {
        const unsigned chance = random() % 4;
        if (each == u' ')
            text += chance == 0 ? u"\t"_s : chance == 1 ? u" \r\n "_s : u" "_s;
        else
            text += chance == 0 ? each.toUpper() : chance == 1 ? each.toLower() : each;
    }
    return text;
}

}  // namespace

const QList<WindowStatement>& windowStatements() {
    static const QList<WindowStatement> statements = [] {
        QList<WindowStatement> list;
        for (const LookupField field : kFields)
            list.append({u"lookup %1"_s.arg(static_cast<int>(field)),
                         [field](const FilterState& state) { return lookup::buildLookup(field, state).Sql; }});
        list.append({u"report per partner"_s, [](const FilterState& state) {
                         return reportOf(state, state.isSupplierSide() ? u"Furnizor"_s : u"Client"_s, false);
                     }});
        list.append({u"report per day"_s, [](const FilterState& state) { return reportOf(state, u"Zi"_s, false); }});
        list.append({u"totals"_s, [](const FilterState& state) { return reportOf(state, u"Zi"_s, true); }});
        return list;
    }();
    return statements;
}

const QList<SplicePoint>& splicePoints() {
    static const QList<SplicePoint> points = [] {
        QList<SplicePoint> list;
        for (const LookupField field : kFields)
            list.append({u"field %1"_s.arg(static_cast<int>(field)),
                         [field](FilterState& state, const QString& value) { state.fields[field].text = value; },
                         true});
        for (const CodeVariable code : filters::kCodeVariables)
            list.append({u"code %1"_s.arg(static_cast<int>(code)),
                         [code](FilterState& state, const QString& value) { state.codes[code] = value; },
                         code != CodeVariable::sCodAgent});
        list.append({u"sSoc"_s, [](FilterState& state, const QString& value) { state.sSoc = value; }, false});
        list.append({u"cmbCategorie"_s,
                     [](FilterState& state, const QString& value) {
                         state.cmbCategorieIndex = 1;
                         state.cmbCategorie = value;
                     },
                     true});
        list.append({u"cmbDepozit"_s,
                     [](FilterState& state, const QString& value) {
                         state.depozite = {u"1 - A"_s, value + u" - B"_s};
                     },
                     false});
        return list;
    }();
    return points;
}

FilterState filledState(const QString& kind) {
    FilterState state;
    state.sTipRaport = kind;
    for (const LookupField field : kFields) state.fields[field].text = u"abc"_s;
    for (const CodeVariable code : filters::kCodeVariables) state.codes[code] = u"C1"_s;
    state.codes[CodeVariable::sCodAgent] = u"3"_s;
    state.depozite = QStringList{u"1 - A"_s};
    state.cmbSortare = u"Data"_s;
    state.deLaData = QDate(2026, 3, 1);
    state.laData = QDate(2026, 3, 15);
    return state;
}

QString hostileValue(bool isQuoted, std::mt19937& random) {
    const QString out = isQuoted ? any(kWaysOut, random) : any(kBareStarts, random);
    const QString deed = any(kDeeds, random);
    // A bare value is glued to what follows it, a prefix to its table.
    return out + u' ' + rewritten(deed, random) + any(kWaysBack, random) + (isQuoted ? u""_s : u" "_s);
}

const QStringList& oddQuotes() {
    static const QStringList values{
        u"'"_s, u"O'Neil"_s, u"'''"_s, u"a''b'"_s, u"'a'b'"_s, u"x'--"_s, u"x' or 'a'='a' or a=''"_s};
    return values;
}

}  // namespace velcoran::tests
