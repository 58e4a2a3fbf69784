#include "definition.h"

#include "definition_model.h"
#include "json_node.h"

#include "base/error.h"

#include <QFile>
#include <QJsonDocument>

#include <algorithm>
#include <cmath>

static void initialiseResources() { Q_INIT_RESOURCE(velcoran_definitions); }

namespace velcoran::report {

using namespace Qt::StringLiterals;

namespace {

constexpr double kLineSpacing = 1.2;    // distance of lines, in font sizes
constexpr int kMaxLength = 100'000;     // twips: no sheet is longer
constexpr double kDefaultFontSize = 8;  // points

constexpr JsonWord<SectionKind> kSectionKinds[] = {
    {u"reportHeader", SectionKind::ReportHeader}, {u"pageHeader", SectionKind::PageHeader},
    {u"groupHeader", SectionKind::GroupHeader},   {u"details", SectionKind::Details},
    {u"groupFooter", SectionKind::GroupFooter},   {u"reportFooter", SectionKind::ReportFooter},
    {u"pageFooter", SectionKind::PageFooter},     {u"noData", SectionKind::NoData},
};
constexpr JsonWord<ObjectKind> kObjectKinds[] = {
    {u"text", ObjectKind::Text}, {u"field", ObjectKind::Field}, {u"unbound", ObjectKind::Unbound},
    {u"line", ObjectKind::Line}, {u"box", ObjectKind::Box},
};
constexpr JsonWord<ObjectRole> kRoles[] = {
    {u"title", ObjectRole::Title}, {u"period", ObjectRole::Period}, {u"groupLabel", ObjectRole::GroupLabel}};
constexpr JsonWord<Alignment> kAlignments[] = {
    {u"left", Alignment::Left},
    {u"centre", Alignment::Centre},
    {u"right", Alignment::Right},
    {u"decimal", Alignment::Decimal},
};
constexpr JsonWord<ValueFormat> kFormats[] = {
    {u"text", ValueFormat::Text}, {u"amount", ValueFormat::Amount}, {u"rate", ValueFormat::Rate}};
constexpr JsonWord<Shown> kShown[] = {
    {u"always", Shown::Always}, {u"detailed", Shown::Detailed}, {u"totals", Shown::Totals}, {u"never", Shown::Never}};
constexpr JsonWord<Grouping> kGroupings[] = {{u"partner", Grouping::Partner}, {u"day", Grouping::Day}};
constexpr JsonWord<bool> kOrientations[] = {{u"portrait", false}, {u"landscape", true}};

enum class Scope : std::uint8_t { Everywhere, Group, Totals, ReportEnd };

struct VariableRow {
    QStringView word;
    Variable variable;
    Scope scope;
};
constexpr VariableRow kVariables[] = {
    {u"page", Variable::Page, Scope::Everywhere},
    {u"pages", Variable::Pages, Scope::Everywhere},
    {u"printTime", Variable::PrintTime, Scope::Everywhere},
    {u"reportRows", Variable::ReportRows, Scope::Everywhere},
    {u"groupKey", Variable::GroupKey, Scope::Group},
    {u"groupRows", Variable::GroupRows, Scope::Group},
    {u"continued", Variable::Continued, Scope::Group},
    {u"currency", Variable::Currency, Scope::Totals},
    {u"rows", Variable::Rows, Scope::Totals},
    {u"leiTotal", Variable::LeiTotal, Scope::ReportEnd},
    {u"withoutRate", Variable::WithoutRate, Scope::ReportEnd},
};

bool isInScope(Scope scope, const DefinitionSection& section) {
    const SectionKind kind = section.kind;
    if (scope == Scope::Group) {
        return kind == SectionKind::GroupHeader || kind == SectionKind::GroupFooter || kind == SectionKind::Details;
    }
    if (scope == Scope::Totals) return section.isPerCurrency;
    if (scope == Scope::ReportEnd) return kind == SectionKind::ReportFooter;
    return true;
}

/// A word between braces: a variable, or the column whose sum is meant.
TemplatePart variableOf(const JsonNode& node, QStringView word, const DefinitionSection& section) {
    const auto checked = [&](Scope scope, const TemplatePart& part) {
        if (!isInScope(scope, section)) node.fail(u"{%1} has no value in this section"_s.arg(word));
        return part;
    };
    for (const VariableRow& row : kVariables)
        if (row.word == word) return checked(row.scope, {{}, row.variable});
    for (const ColumnRow& column : kColumns)
        if (column.kind == CellKind::Amount && column.name == word)
            return checked(Scope::Totals, {{}, Variable::Sum, column.role});
    node.fail(u"unknown variable {%1}"_s.arg(word));
}

std::vector<TemplatePart> readTemplate(const JsonNode& node, const QString& text, const DefinitionSection& section) {
    std::vector<TemplatePart> parts;
    qsizetype at = 0;
    while (at < text.size()) {
        const qsizetype open = text.indexOf(u'{', at);
        const QString words = text.mid(at, open < 0 ? -1 : open - at);
        if (!words.isEmpty()) parts.push_back({words, std::nullopt});
        if (open < 0) break;
        const qsizetype close = text.indexOf(u'}', open);
        if (close < 0) node.fail(u"\"text\" has a brace that is not closed"_s);
        parts.push_back(variableOf(node, QStringView(text).mid(open + 1, close - open - 1), section));
        at = close + 1;
    }
    return parts;
}

base::Colour readColour(const JsonNode& node) {
    if (!node.has(u"colour"_s)) return {};
    const QString text = node.text(u"colour"_s);
    bool isNumber = false;
    const uint value = text.mid(2).toUInt(&isNumber, 16);
    if (!isNumber || !text.startsWith(u"0x") || text.size() != 8) {
        node.fail(u"\"colour\" must be written 0xBBGGRR"_s);
    }
    return {value};
}

base::TwipsRect readPlace(const JsonNode& node, const DefinitionSection& section, base::Twips width) {
    const QJsonArray place = node.array(u"place"_s);
    std::array<int, 4> values{};
    for (qsizetype i = 0; i < 4; ++i) {
        const double value = place.size() == 4 ? place[i].toDouble(-1) : -1;
        if (value < 0 || value > kMaxLength || value != std::floor(value)) {
            node.fail(u"\"place\" must be four whole numbers: left, top, width, height in twips"_s);
        }
        values[static_cast<std::size_t>(i)] = static_cast<int>(value);
    }
    if (values[0] + values[2] > width.value) node.fail(u"\"place\" reaches beyond the right margin"_s);
    if (values[1] + values[3] > section.height.value) node.fail(u"\"place\" reaches beyond the section"_s);
    return {{values[0]}, {values[1]}, {values[2]}, {values[3]}};
}

void readWords(const JsonNode& node, const DefinitionSection& section, DefinitionObject& object) {
    object.fontSize = static_cast<float>(node.decimal(u"size"_s, 4, 72, kDefaultFontSize));
    object.isBold = node.flag(u"bold"_s, false);
    object.alignment = node.word<Alignment>(u"align"_s, kAlignments, Alignment::Left);
    object.isGrowing = node.flag(u"grow"_s, false);
    if (object.isGrowing && section.kind != SectionKind::GroupHeader) node.fail(u"only a group heading grows"_s);
    if (object.place.width.value == 0) node.fail(u"\"place\" has no width"_s);
    if (object.place.height < lineHeightOf(object.fontSize)) node.fail(u"\"place\" is lower than a line of its text"_s);
}

DefinitionObject readObject(const JsonNode& node, const QString& name, const DefinitionSection& section,
                            const Definition& definition) {
    static const QStringList kDrawn{u"type"_s, u"place"_s, u"colour"_s, u"shown"_s, u"thickness"_s};
    static const QStringList kWords{u"type"_s, u"place"_s, u"colour"_s, u"shown"_s,
                                    u"size"_s, u"bold"_s,  u"align"_s,  u"grow"_s};
    DefinitionObject object;
    object.name = name;
    object.kind = node.word<ObjectKind>(u"type"_s, kObjectKinds);
    object.place = readPlace(node, section, definition.printableWidth());
    object.colour = readColour(node);
    object.shown = node.word<Shown>(u"shown"_s, kShown, Shown::Always);
    if (node.has(u"role"_s)) object.role = node.word<ObjectRole>(u"role"_s, kRoles);
    switch (object.kind) {
        case ObjectKind::Line:
        case ObjectKind::Box:
            node.allowOnly(kDrawn);
            object.thickness = {node.number(u"thickness"_s, 1, 200, 8)};
            return object;
        case ObjectKind::Text:
            node.allowOnly(kWords + QStringList{u"text"_s, u"role"_s});
            object.text = node.text(u"text"_s);
            break;
        case ObjectKind::Field:
            node.allowOnly(kWords + QStringList{u"text"_s, u"when"_s});
            object.parts = readTemplate(node, node.text(u"text"_s), section);
            if (node.has(u"when"_s)) object.condition = variableOf(node, node.text(u"when"_s), section).variable;
            break;
        case ObjectKind::Unbound:
            node.allowOnly(kWords + QStringList{u"format"_s, u"role"_s});
            object.format = node.word<ValueFormat>(u"format"_s, kFormats, ValueFormat::Text);
            object.column = columnOf(name);
            if (object.format != ValueFormat::Text && !(object.column && isAmount(*object.column))) {
                node.fail(u"\"format\" needs a column of numbers"_s);
            }
            break;
    }
    readWords(node, section, object);
    return object;
}

bool isRepeatable(SectionKind kind) { return kind == SectionKind::GroupFooter || kind == SectionKind::ReportFooter; }

/// Objects in the order in which a person reads them.
void sortObjects(std::vector<DefinitionObject>& objects) {
    std::stable_sort(objects.begin(), objects.end(), [](const auto& one, const auto& other) {
        return std::pair(one.place.top, one.place.left) < std::pair(other.place.top, other.place.left);
    });
}

DefinitionSection readSection(const JsonNode& node, const Definition& definition) {
    node.allowOnly({u"kind"_s, u"height"_s, u"perCurrency"_s, u"objects"_s});
    DefinitionSection section;
    section.kind = node.word<SectionKind>(u"kind"_s, kSectionKinds);
    section.height = {node.number(u"height"_s, section.kind == SectionKind::Details ? 1 : 0, kMaxLength)};
    section.isPerCurrency = node.flag(u"perCurrency"_s, false);
    if (section.isPerCurrency && !isRepeatable(section.kind)) {
        node.fail(u"\"perCurrency\" belongs to group and report footers"_s);
    }
    if (!isRepeatable(section.kind) && definition.section(section.kind) != nullptr) {
        node.fail(u"there is a section of this kind already"_s);
    }
    const JsonNode objects = node.object(u"objects"_s);
    const QStringList names = objects.keys();
    for (const QString& name : names) {
        const JsonNode object = objects.object(name);
        if (definition.object(name) != nullptr) object.fail(u"the name is taken by another section"_s);
        section.objects.push_back(readObject(object, name, section, definition));
    }
    const auto isGrowing = [](const DefinitionObject& object) { return object.isGrowing; };
    if (std::count_if(section.objects.begin(), section.objects.end(), isGrowing) > 1) {
        node.fail(u"only one object of a section grows"_s);
    }
    sortObjects(section.objects);
    return section;
}

PageSetup readPage(const JsonNode& node) {
    node.allowOnly({u"paper"_s, u"orientation"_s, u"margins"_s});
    if (!paperNames().contains(node.text(u"paper"_s))) {
        node.fail(u"\"paper\" must be one of %1"_s.arg(paperNames().join(u", "_s)));
    }
    PageSetup setup = pageSetup(node.text(u"paper"_s), node.word<bool>(u"orientation"_s, kOrientations));
    const JsonNode margins = node.object(u"margins"_s);
    margins.allowOnly({u"left"_s, u"top"_s, u"right"_s, u"bottom"_s});
    const int most = std::min(setup.width, setup.height).value / 3;
    setup.left = {margins.number(u"left"_s, 0, most)};
    setup.top = {margins.number(u"top"_s, 0, most)};
    setup.right = {margins.number(u"right"_s, 0, most)};
    setup.bottom = {margins.number(u"bottom"_s, 0, most)};
    return setup;
}

[[noreturn]] void failSyntax(const QByteArray& json, const QJsonParseError& error) {
    // The offset lies behind the character at which reading stopped.
    const QByteArray before = json.left(std::max(0, error.offset - 1));
    const qsizetype line = before.count('\n') + 1;
    const qsizetype column = before.size() - (before.lastIndexOf('\n') + 1) + 1;
    throw base::Error(base::kInvalidProcedureCall,
                      u"line %1, column %2: %3"_s.arg(line).arg(column).arg(error.errorString()));
}

/// Everything but the fixed sections must leave room for some lines of details.
void checkRoom(const JsonNode& root, const Definition& definition) {
    int taken = 0;
    for (const DefinitionSection& section : definition.sections) taken += section.height.value;
    if (taken > definition.setup.height.value - definition.setup.top.value - definition.setup.bottom.value) {
        root.fail(u"the sections are higher together than the page"_s);
    }
}

}  // namespace

base::Twips lineHeightOf(float fontSize) {
    return {static_cast<std::int32_t>(std::lround(static_cast<double>(fontSize) * 20 * kLineSpacing))};
}

namespace {

template <class Value>
const DefinitionObject* objectWith(const Definition& definition, Value DefinitionObject::*member, const Value& value) {
    for (const DefinitionSection& section : definition.sections) {
        const auto found = std::ranges::find(section.objects, value, member);
        if (found != section.objects.end()) return &*found;
    }
    return nullptr;
}

}  // namespace

const DefinitionObject* Definition::object(const QString& objectName) const {
    return objectWith(*this, &DefinitionObject::name, objectName);
}

const DefinitionObject* Definition::object(ObjectRole role) const {
    return objectWith(*this, &DefinitionObject::role, role);
}

const DefinitionSection* Definition::section(SectionKind kind) const {
    for (const DefinitionSection& section : sections) {
        if (section.kind == kind) return &section;
    }
    return nullptr;
}

std::shared_ptr<const Definition> readDefinition(const QByteArray& json) {
    QJsonParseError error;
    const QJsonDocument document = QJsonDocument::fromJson(json, &error);
    if (error.error != QJsonParseError::NoError) failSyntax(json, error);
    const JsonNode root(document.object(), {});
    if (!document.isObject()) root.fail(u"a definition is one object"_s);
    root.allowOnly({u"name"_s, u"group"_s, u"page"_s, u"sections"_s});
    auto definition = std::make_shared<Definition>();
    definition->name = root.text(u"name"_s);
    if (definition->name.isEmpty()) root.fail(u"\"name\" is empty"_s);
    definition->grouping = root.word<Grouping>(u"group"_s, kGroupings);
    definition->setup = readPage(root.object(u"page"_s));
    const QJsonArray sections = root.array(u"sections"_s);
    for (qsizetype i = 0; i < sections.size(); ++i) {
        const JsonNode node(sections[i].toObject(), u"sections[%1]"_s.arg(i));
        if (!sections[i].isObject()) node.fail(u"a section is an object"_s);
        definition->sections.push_back(readSection(node, *definition));
    }
    if (definition->section(SectionKind::Details) == nullptr) root.fail(u"\"sections\" has no \"details\""_s);
    checkRoom(root, *definition);
    return definition;
}

std::shared_ptr<const Definition> definitionNamed(const QString& name) {
    initialiseResources();
    QFile file(u":/velcoran/definitions/"_s + name + u".json"_s);
    if (name.contains(u'/') || !file.open(QIODevice::ReadOnly)) {
        throw base::Error(base::kNoSuchObject, u"Nu există definiția de raport „%1”."_s.arg(name));
    }
    return readDefinition(file.readAll());
}

const PageSetup& designedSetup(const Definition& definition) { return definition.setup; }

}  // namespace velcoran::report
