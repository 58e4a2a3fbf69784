#include "scripted_printers.h"

#include <QDir>
#include <QFile>

#include <unistd.h>
#include <cstdlib>
#include <cstring>

namespace velcoran::tests {

ScriptedPrinters& scriptedPrinters() {
    static ScriptedPrinters printers;
    return printers;
}

namespace {

// As cups.h declares them, version 2.
struct Option {
    char* name;
    char* value;
};
struct Destination {
    char* name;
    char* instance;
    int isDefault;
    int optionCount;
    Option* options;
};

constexpr char kDescription[] = R"ppd(*PPD-Adobe: "4.3"
*FormatVersion: "4.3"
*FileVersion: "1.0"
*LanguageVersion: English
*LanguageEncoding: ISOLatin1
*PCFileName: "TEST.PPD"
*Manufacturer: "Test"
*Product: "(Test)"
*ModelName: "Test"
*ShortNickName: "Test"
*NickName: "Test"
*PSVersion: "(3010.000) 0"
*LanguageLevel: "3"
*ColorDevice: True
*DefaultColorSpace: RGB
*FileSystem: False
*OpenUI *PageSize/Media Size: PickOne
*OrderDependency: 10 AnySetup *PageSize
*DefaultPageSize: A4
*PageSize A4/A4: "<</PageSize[595 842]>>setpagedevice"
*PageSize A3/A3: "<</PageSize[842 1191]>>setpagedevice"
*CloseUI: *PageSize
*OpenUI *PageRegion: PickOne
*OrderDependency: 10 AnySetup *PageRegion
*DefaultPageRegion: A4
*PageRegion A4/A4: "<</PageSize[595 842]>>setpagedevice"
*PageRegion A3/A3: "<</PageSize[842 1191]>>setpagedevice"
*CloseUI: *PageRegion
*DefaultImageableArea: A4
*ImageableArea A4/A4: "12 12 583 830"
*ImageableArea A3/A3: "12 12 830 1179"
*DefaultPaperDimension: A4
*PaperDimension A4/A4: "595 842"
*PaperDimension A3/A3: "842 1191"
)ppd";

Destination destinationOf(const QString& name) {
    return {strdup(name.toUtf8().constData()), nullptr, name == scriptedPrinters().byDefault ? 1 : 0, 0, nullptr};
}

}  // namespace
}  // namespace velcoran::tests

using namespace velcoran::tests;

#define ANSWERED_HERE extern "C" __attribute__((visibility("default"), used))

ANSWERED_HERE int cupsGetDests(Destination** destinations) {
    const QStringList& names = scriptedPrinters().names;
    *destinations =
        static_cast<Destination*>(std::calloc(static_cast<std::size_t>(names.size()) + 1, sizeof(Destination)));
    for (qsizetype i = 0; i < names.size(); ++i) (*destinations)[i] = destinationOf(names[i]);
    return static_cast<int>(names.size());
}

ANSWERED_HERE void cupsFreeDests(int count, Destination* destinations) {
    for (int i = 0; i < count; ++i) std::free(destinations[i].name);
    std::free(destinations);
}

ANSWERED_HERE Destination* cupsGetNamedDest(void*, const char* name, const char*) {
    const QString asked = name == nullptr ? scriptedPrinters().byDefault : QString::fromUtf8(name);
    if (!scriptedPrinters().names.contains(asked)) return nullptr;
    auto* destination = static_cast<Destination*>(std::malloc(sizeof(Destination)));
    *destination = destinationOf(asked);
    return destination;
}

// The asker removes the file, as of the next one.
ANSWERED_HERE int cupsTempFd(char* path, int length) {
    if (!scriptedPrinters().hasRoom) return -1;
    const QByteArray place = QDir::temp().filePath(QStringLiteral("velcoran-job-XXXXXX")).toUtf8();
    qstrncpy(path, place.constData(), static_cast<std::size_t>(length));
    return mkstemp(path);
}

ANSWERED_HERE const char* cupsGetPPD(const char*) {
    static char path[1024];
    const int file = cupsTempFd(path, sizeof path);
    const bool isWritten = file >= 0 && write(file, kDescription, sizeof kDescription - 1) > 0;
    if (file >= 0) close(file);
    return isWritten ? path : nullptr;
}

ANSWERED_HERE int cupsPrintFile(const char* name, const char* file, const char*, int optionCount, Option* options) {
    PrintedJob job{QString::fromUtf8(name), {}, {}};
    for (int i = 0; i < optionCount; ++i)
        job.options[QString::fromUtf8(options[i].name)] = QString::fromUtf8(options[i].value);
    QFile printed(QString::fromUtf8(file));
    if (printed.open(QIODevice::ReadOnly)) job.pdf = printed.readAll();
    scriptedPrinters().jobs.append(job);
    return static_cast<int>(scriptedPrinters().jobs.size());
}
