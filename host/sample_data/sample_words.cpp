#include "sample_words.h"

#include "sample_random.h"

namespace velcoran::host {

namespace {

constexpr SampleWarehouse kWarehouses[] = {
    {1, "Depozit Central"}, {4, "Depozit Vamă"},        {7, "Hala Producție"},
    {12, "Magazie Sud"},    {120, "Antrepozit - Port"}, {35, "Depozit Consignație"},
    {8, "Depozit Șantier"}, {21, "Magazie Export"},     {50, "Depozit Frigorific"}};

constexpr SampleAgent kAgents[] = {
    {1, "AGENT NORD", false},         {2, "AGENT SUD", false},
    {3, "ÎNCASĂRI EXTERNE", false},   {5, "ȘANTIERE ȘI TERȚI", true},
    {8, "AGENT MUREȘ", false},        {10, "AGENT MARAMUREȘ", false},
    {11, "DEALER VEST", false},       {12, "DELEGAT DOBROGEA", true},
    {15, "REPREZENTANȚĂ EST", false}, {21, "REPREZENTANȚĂ CENTRU ȘI TRANSPORT INTERN", false},
    {30, "BIROU PORT", true},         {101, "L'AGENCE OUEST", false}};

constexpr const char* kProducers[] = {
    "ARINIȘ FABRICA", "ALPIN METAL",     "BRĂDET LEMN",   "CLARA CHIM",   "CODRU TEXTIL",
    "DELTINA PLAST",  "DUMBRAVA UTIL",   "FULGER NORD",   "FERODAR SUD",  "GAMARA HÂRTIE",
    "HIDROVAL",       "IZVOREL BĂUTURI", "LUMEA STICLEI", "METALINA EST", "ORIZONT PRODUCȚIE ȘI DISTRIBUȚIE",
    "ȘURUBEL COM"};

constexpr SampleEntry kGroups[] = {{"ALIM", "Alimente"},
                                   {"AMBA", "Ambalaje"},
                                   {"AUTO", "Piese auto"},
                                   {"CHIM", "Chimicale"},
                                   {"CONS", "Materiale construcții"},
                                   {"ELEC", "Electrice"},
                                   {"ELEN", "Electronice"},
                                   {"FIER", "Fierărie"},
                                   {"LEMN", "Produse din lemn"},
                                   {"MOBI", "Mobilier"},
                                   {"PAPE", "Papetărie"},
                                   {"SERV", "Servicii diverse"},
                                   {"TEXT", "Textile"},
                                   {"UTIL", "Utilaje"},
                                   {"VIDE", "Grupă fără produse"}};

constexpr SampleEntry kSupplierTypes[] = {
    {"EXT", "Extern"}, {"EXU", "Extern UE"}, {"INT", "Intern"}, {"PRE", "Prestator"}, {"TRA", "Transportator"}};
constexpr SampleEntry kSupplierCategories[] = {
    {"A", "Categoria A"}, {"B", "Categoria B"}, {"B2", "Categoria B doi"}, {"C", "Categoria C"}};
constexpr SampleEntry kClientTypes[] = {{"DIST", "Distribuitor"},
                                        {"DETA", "Detailist"},
                                        {"EXP", "Client export"},
                                        {"EXPU", "Client export UE"},
                                        {"RETE", "Rețea"}};
constexpr SampleEntry kClientCategories[] = {
    {"AUR", "Aur"}, {"ARG", "Argint"}, {"BRO", "Bronz"}, {"NOU", "Nou"}, {"VECHI", "Vechi"}};

constexpr SampleCurrency kCurrencies[] = {{"EUR", 49700, 51500, 1}, {"USD", 43500, 47500, 1}, {"GBP", 57200, 60100, 1},
                                          {"HUF", 121, 133, 390},   {"CHF", 52000, 55000, 1}, {"RON", 10000, 10000, 5}};

constexpr const char* kTypePrefixes[] = {"MS", "MF", "MN", "PF", "PC", "SV", "AC", "MX", "PL"};

constexpr const char* kFirstWords[] = {
    "ALBĂSTREA", "ARINIȘ",   "BRĂDET",  "BORANGIC",  "CASCADA",  "CODRUȚ",   "CORALIA",  "CRISTALIN",
    "DELTINA",   "DUMBRAVA", "FLORIȘ",  "FULGER",    "GHIOCEL",  "GRANITAL", "HAMEIUL",  "IZVOREL",
    "LAVANDA",   "LUMINIȘ",  "MAGURIN", "MESTEACĂN", "NORDELIA", "OLEANDRU", "ORIZONT",  "PĂDURIȘ",
    "POIENIȚA",  "RĂSĂRIT",  "SAFIRIȘ", "SORELIA",   "STEJARUL", "ȘOIMUL",   "TERRALIS", "TRANDAFIR",
    "ȚĂRMURI",   "UNDINA",   "VALDORO", "VIORELE",   "VULTURUL", "ZEFIRUL",  "ZMEURIȘ",  "ZORILE"};
constexpr const char* kTrades[] = {"AGRO",   "CHIM",   "COM",    "CONSTRUCT", "DISTRIBUȚIE", "ELECTRO",
                                   "EXPORT", "FOOD",   "IMPEX",  "LEMN",      "LOGISTIC",    "METAL",
                                   "PROD",   "TEHNIC", "TEXTIL", "TRADE"};
constexpr const char* kLegalForms[] = {"SRL", "SA", "GMBH", "SPA", "LTD", "KFT", "SARL", "BV"};

constexpr const char* kNouns[] = {"CABLU",  "CIMENT", "CUTIE", "FĂINĂ",  "HÂRTIE",   "LAMPĂ", "MASĂ",
                                  "MOTOR",  "PLACĂ",  "POMPĂ", "ȘURUB",  "ȚEAVĂ",    "ULEI",  "VOPSEA",
                                  "FILTRU", "PERNĂ",  "ROATĂ", "SUPAPĂ", "SERVICIU", "TAXĂ"};
constexpr const char* kQualities[] = {"ALB",   "EXTRA",   "INOX",     "LEMN", "MARE",    "MIC",
                                      "NEGRU", "SPECIAL", "STANDARD", "UȘOR", "SUBȚIRE", "LUNG"};
constexpr const char* kVariants[] = {"A", "B", "C", "D", "E", "F"};

}  // namespace

std::span<const SampleWarehouse> sampleWarehouses() { return kWarehouses; }
std::span<const SampleAgent> sampleAgents() { return kAgents; }
std::span<const char* const> sampleProducers() { return kProducers; }
std::span<const SampleEntry> sampleGroups() { return kGroups; }
std::span<const SampleEntry> sampleSupplierTypes() { return kSupplierTypes; }
std::span<const SampleEntry> sampleSupplierCategories() { return kSupplierCategories; }
std::span<const SampleEntry> sampleClientTypes() { return kClientTypes; }
std::span<const SampleEntry> sampleClientCategories() { return kClientCategories; }
std::span<const SampleCurrency> sampleCurrencies() { return kCurrencies; }
std::span<const char* const> sampleTypePrefixes() { return kTypePrefixes; }

std::string companyName(std::uint64_t draw) {
    SampleRandom random(draw);
    std::string name = random.pick(kFirstWords);
    name += ' ';
    name += random.pick(kTrades);
    name += ' ';
    return name + random.pick(kLegalForms);
}

std::string productName(std::uint64_t draw) {
    SampleRandom random(draw);
    std::string name = random.pick(kNouns);
    name += ' ';
    name += random.pick(kQualities);
    name += " TIP ";
    return name + random.pick(kVariants);
}

}  // namespace velcoran::host
