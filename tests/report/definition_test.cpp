#include "report/layout/definition.h"
#include "base/error.h"
#include "report/layout/definition_model.h"
#include "report/layout/document.h"
#include "report/report.h"
#include "support/test_data.h"

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;
using namespace velcoran;
using namespace velcoran::report;

namespace {

const QByteArray kPage =
    R"("page": {"paper": "A4", "orientation": "landscape", "margins": {"left": 567, "top": 567, "right": 567, "bottom": 567}})";

/// A definition with one section of details besides the ones given.
QByteArray withSections(const QByteArray& sections) {
    return R"({"name": "Test", "group": "day", )" + kPage + R"(, "sections": [)" + sections +
           R"({"kind": "details", "height": 212, "objects": {}}]})";
}

QByteArray withObject(const QByteArray& object) {
    return withSections(R"({"kind": "pageHeader", "height": 400, "objects": {"Text6": )" + object + "}},");
}

struct Case {
    const char* name;
    QByteArray json;
    const char16_t* message;
};

}  // namespace

TEST(ReadDefinition, namesWhatIsWrong) {
    const Case cases[] = {
        {"syntax", "{\n  \"name\": \"x\",\n  \"group\" \"day\"\n}", u"line 3, column 11: missing name separator"},
        {"no object", "[]", u"a definition is one object"},
        {"no name", "{}", u"\"name\" is missing"},
        {"unknown member", R"({"name": "x", "nmae": 1})", u"unknown member \"nmae\""},
        {"no grouping", R"({"name": "x", "group": "week"})", u"\"group\" is \"week\", must be one of partner, day"},
        {"paper", R"({"name": "x", "group": "day", "page": {"paper": "A9"}})",
         u"page: \"paper\" must be one of A4, A3, A5, Letter, Legal"},
        {"margin",
         R"({"name": "x", "group": "day", "page": {"paper": "A4", "orientation": "portrait", "margins": {"left": -1}}})",
         u"page.margins: \"left\" must be a whole number from 0 to 3968"},
        {"no details", R"({"name": "x", "group": "day", )" + kPage + R"(, "sections": []})",
         u"\"sections\" has no \"details\""},
        {"section kind", withSections(R"({"kind": "side", "height": 1, "objects": {}},)"),
         u"sections[0]: \"kind\" is \"side\", must be one of reportHeader, pageHeader, groupHeader, details, "
         u"groupFooter, reportFooter, pageFooter, noData"},
        {"section twice", withSections(R"({"kind": "details", "height": 212, "objects": {}},)"),
         u"sections[1]: there is a section of this kind already"},
        {"section no object", withSections("7,"), u"sections[0]: a section is an object"},
        {"per currency", withSections(R"({"kind": "pageHeader", "height": 1, "perCurrency": true, "objects": {}},)"),
         u"sections[0]: \"perCurrency\" belongs to group and report footers"},
        {"too high", withSections(R"({"kind": "pageHeader", "height": 20000, "objects": {}},)"),
         u"the sections are higher together than the page"},
        {"name twice",
         withSections(R"({"kind": "pageHeader", "height": 9, "objects": {"A": {"type": "line", "place": [0,0,9,0]}}},
                         {"kind": "pageFooter", "height": 9, "objects": {"A": {"type": "line", "place": [0,0,9,0]}}},)"),
         u"sections[1].objects.A: the name is taken by another section"},
        {"type", withObject(R"({"type": "picture"})"),
         u"sections[0].objects.Text6: \"type\" is \"picture\", must be one of text, field, unbound, line, box"},
        {"place", withObject(R"({"type": "text", "place": [0, 0, 100], "text": ""})"),
         u"sections[0].objects.Text6: \"place\" must be four whole numbers: left, top, width, height in twips"},
        {"place beyond the margin", withObject(R"({"type": "text", "place": [15000, 0, 705, 200], "text": ""})"),
         u"sections[0].objects.Text6: \"place\" reaches beyond the right margin"},
        {"place beyond the section", withObject(R"({"type": "text", "place": [0, 300, 100, 101], "text": ""})"),
         u"sections[0].objects.Text6: \"place\" reaches beyond the section"},
        {"no text", withObject(R"({"type": "text", "place": [0, 0, 100, 200]})"),
         u"sections[0].objects.Text6: \"text\" is missing"},
        {"low", withObject(R"({"type": "text", "place": [0, 0, 100, 200], "text": "", "size": 14})"),
         u"sections[0].objects.Text6: \"place\" is lower than a line of its text"},
        {"colour", withObject(R"({"type": "line", "place": [0, 0, 100, 0], "colour": "red"})"),
         u"sections[0].objects.Text6: \"colour\" must be written 0xBBGGRR"},
        {"variable", withObject(R"({"type": "field", "place": [0, 0, 100, 200], "text": "{pags}"})"),
         u"sections[0].objects.Text6: unknown variable {pags}"},
        {"variable out of place", withObject(R"({"type": "field", "place": [0, 0, 100, 200], "text": "{leiTotal}"})"),
         u"sections[0].objects.Text6: {leiTotal} has no value in this section"},
        {"brace", withObject(R"({"type": "field", "place": [0, 0, 100, 200], "text": "{page"})"),
         u"sections[0].objects.Text6: \"text\" has a brace that is not closed"},
        {"format", withObject(R"({"type": "unbound", "place": [0, 0, 100, 200], "format": "amount"})"),
         u"sections[0].objects.Text6: \"format\" needs a column of numbers"},
        {"grow", withObject(R"({"type": "text", "place": [0, 0, 100, 200], "text": "", "grow": true})"),
         u"sections[0].objects.Text6: only a group heading grows"},
        {"thickness is no text's",
         withObject(R"({"type": "text", "place": [0, 0, 100, 200], "text": "", "thickness": 3})"),
         u"sections[0].objects.Text6: unknown member \"thickness\""},
    };
    for (const Case& one : cases) {
        try {
            (void)readDefinition(one.json);
            ADD_FAILURE() << one.name << ": read without an error";
        } catch (const base::Error& error) {
            EXPECT_EQ(error.number(), base::kInvalidProcedureCall) << one.name;
            EXPECT_EQ(error.description(), QString::fromUtf16(one.message)) << one.name;
        }
    }
}

TEST(DefinitionNamed, hasTheObjectsThatHandOverNames) {
    struct Expected {
        const char16_t *definition, *object, *text;
    };
    const Expected expected[] = {
        {u"CRFacturiImport", u"Text1", u"RAPORT FACTURI EXTERNE - FURNIZORI"},
        {u"CRFacturiImport", u"Text2", u"COD\r\nFURNIZOR"},
        {u"CRFacturiImport", u"Text3", u"DENUMIRE\r\nFURNIZOR"},
        {u"CRFacturiImport", u"Text6", u"FURNIZOR:"},
        {u"CRFacturiImportDT", u"Text1", u"RAPORT FACTURI EXTERNE - FURNIZORI"},
        {u"CRFacturiImportDT", u"Text9", u"FURNIZOR"},
    };
    for (const Expected& one : expected) {
        const Report report(definitionNamed(QString::fromUtf16(one.definition)));
        EXPECT_EQ(report.text(QString::fromUtf16(one.object)), QString::fromUtf16(one.text));
    }
    for (const QString& name : {u"CRFacturiImport"_s, u"CRFacturiImportDT"_s}) {
        const auto definition = definitionNamed(name);
        EXPECT_EQ(definition->name, name);
        EXPECT_NE(definition->object(u"UnboundString6"_s), nullptr);
        for (const ColumnRow& column : kColumns) {
            const DefinitionObject* object = definition->object(column.name.toString());
            EXPECT_TRUE(object != nullptr && object->kind == ObjectKind::Unbound) << qPrintable(column.name.toString());
        }
    }
    EXPECT_THROW((void)definitionNamed(u"CRFacturi"_s), base::Error);
    EXPECT_THROW((void)definitionNamed(u"../definitions/CRFacturiImport"_s), base::Error);
}

TEST(ReportInstance, isACopyWithItsOwnTexts) {
    const auto definition = definitionNamed(u"CRFacturiImport"_s);
    Report one(definition);
    const Report other(definition);
    one.setText(u"Text6"_s, u"CLIENT:"_s);
    EXPECT_EQ(one.text(u"Text6"_s), u"CLIENT:"_s);
    EXPECT_EQ(other.text(u"Text6"_s), u"FURNIZOR:"_s);
    EXPECT_THROW(one.setText(u"Text9"_s, {}), base::Error);
    EXPECT_THROW(one.setText(u"UnboundString6"_s, {}), base::Error);

    one.setUnboundFieldSource(u"UnboundString6"_s, u"'it''s'"_s);
    EXPECT_EQ(one.snapshot().text(ObjectRole::Period), u"it's"_s);
    for (const QString& source : {u"it"_s, u"'it"_s, u"'it's'"_s, u"'"_s, u""_s, u"1 + 1"_s}) {
        try {
            one.setUnboundFieldSource(u"UnboundString6"_s, source);
            ADD_FAILURE() << qPrintable(source);
        } catch (const base::Error& error) {
            EXPECT_EQ(error.number(), base::kTypeMismatch) << qPrintable(source);
        }
    }
    EXPECT_EQ(one.snapshot().text(ObjectRole::Period), u"it's"_s);
}
