#include "sample_schema.h"

#include <cassert>
#include <cstring>

namespace velcoran::host {

namespace {

using enum SampleType;

constexpr int kCode = 20;
constexpr int kName = 100;
constexpr int kSign = 3;

constexpr SampleColumn kAn[] = {{"An", Integer}};
constexpr SampleColumn kDepozite[] = {{"Depozit", Integer}, {"Denumire Depozit", Text, kName}};
constexpr SampleColumn kAgenti[] = {{"Agent", Integer}, {"Denumire Agent", Text, kName}, {"Inactiv", Integer}};
constexpr SampleColumn kProducatori[] = {{"p", Text, kCode}, {"Denumire", Text, kName}};
constexpr SampleColumn kTipuriProduse[] = {{"Tip Produs", Text, kCode}, {"Fel", Integer}};
constexpr SampleColumn kGrupeProdus[] = {{"Grupa Produs", Text, kCode}, {"Descriere", Text, kName}};
constexpr SampleColumn kSubgrupeprodus[] = {
    {"Subgrupa Produs", Text, kCode}, {"Grupa Produs", Text, kCode}, {"Descriere", Text, kName}};
constexpr SampleColumn kCoduriProdus[] = {{"Cod Produs", Text, kCode},
                                          {"Denumire Produs", Text, kName},
                                          {"Tip Produs", Text, kCode},
                                          {"Subgrupa Produs", Text, kCode},
                                          {"P", Text, kCode}};
constexpr SampleColumn kTipFurnizor[] = {{"Tip Furnizor", Text, kCode}, {"Descriere", Text, kName}};
constexpr SampleColumn kCategorieFurnizor[] = {{"Categorie Furnizor", Text, kCode}, {"Descriere", Text, kName}};
constexpr SampleColumn kTipClient[] = {{"Tip Client", Text, kCode}, {"Descriere", Text, kName}};
constexpr SampleColumn kCategorieClient[] = {{"Categorie Client", Text, kCode}, {"Descriere", Text, kName}};
constexpr SampleColumn kFurnizori[] = {{"Furnizor", Text, kCode},
                                       {"Denumire Furnizor", Text, kName},
                                       {"Tip Furnizor", Text, kCode},
                                       {"Categorie Furnizor", Text, kCode},
                                       {"Inactiv", Integer}};
constexpr SampleColumn kMagazine[] = {{"Magazin", Text, kCode},
                                      {"Denumire Magazin", Text, kName},
                                      {"Tip Client", Text, kCode},
                                      {"Categorie Client", Text, kCode},
                                      {"Inactiv", Integer}};
constexpr SampleColumn kCapDocIntE[] = {{"Document", Text, kCode},
                                        {"EC", Integer},
                                        {"Furnizor", Text, kCode},
                                        {"Denumire Furnizor", Text, kName},
                                        {"Data Documentului", DateTime},
                                        {"Valoare Neta", Amount},
                                        {"Valoare TVA", Amount},
                                        {"Valoare Taxe", Amount},
                                        {"Tip Valuta", Text, kSign},
                                        {"Curs Valutar", Amount},
                                        {"Depozit", Integer},
                                        {"Agent", Integer},
                                        {"Transferat", Text, 1}};
constexpr SampleColumn kLinii[] = {{"Document", Text, kCode}, {"Cod Produs", Text, kCode}};

constexpr SampleTable kTables[] = {
    {"An", kAn, nullptr},
    {"Depozite", kDepozite, "Depozit"},
    {"Agenti", kAgenti, "Agent"},
    {"CPP", kProducatori, "p"},
    {"TipuriProduse", kTipuriProduse, "Tip Produs"},
    {"GrupeProdus", kGrupeProdus, "Grupa Produs"},
    {"Subgrupeprodus", kSubgrupeprodus, "Subgrupa Produs"},
    {"CoduriProdus", kCoduriProdus, "Cod Produs"},
    {"Tip Furnizor", kTipFurnizor, "Tip Furnizor"},
    {"Categorie Furnizor", kCategorieFurnizor, "Categorie Furnizor"},
    {"Tip Client", kTipClient, "Tip Client"},
    {"Categorie Client", kCategorieClient, "Categorie Client"},
    {"Furnizori", kFurnizori, "Furnizor"},
    {"Magazine", kMagazine, "Magazin"},
    {"CapDocIntE", kCapDocIntE, "Document"},
    {"Linii DocIntE", kLinii, nullptr},
};

constexpr SampleIndex kIndexes[] = {
    {"i_tip", "TipuriProduse", "Tip Produs", true},
    {"i_grupa", "GrupeProdus", "Grupa Produs", true},
    {"i_subgrupa", "Subgrupeprodus", "Subgrupa Produs", true},
    {"i_subgrupa_grupa", "Subgrupeprodus", "Grupa Produs", false},
    {"i_produs", "CoduriProdus", "Cod Produs", true},
    {"i_produs_tip", "CoduriProdus", "Tip Produs", false},
    {"i_produs_subgrupa", "CoduriProdus", "Subgrupa Produs", false},
    {"i_furnizor", "Furnizori", "Furnizor", true},
    {"i_magazin", "Magazine", "Magazin", true},
    {"i_document", "CapDocIntE", "Document", true},
    {"i_doc_furnizor", "CapDocIntE", "Furnizor", false},
    {"i_doc_data", "CapDocIntE", "Data Documentului", false},
    {"i_linii_document", "Linii DocIntE", "Document", false},
};

}  // namespace

std::span<const SampleTable> sampleTables() { return kTables; }

const SampleTable& sampleTable(const char* name) {
    for (const SampleTable& table : kTables)
        if (std::strcmp(table.name, name) == 0) return table;
    assert(false && "a table that the schema does not have");
    return kTables[0];
}

std::span<const SampleIndex> sampleIndexes() { return kIndexes; }

std::string quotedName(const char* name) {
    return std::strchr(name, ' ') == nullptr ? std::string(name) : '[' + std::string(name) + ']';
}

}  // namespace velcoran::host
