#include "dialogs.h"

#include "com/choice_text.h"
#include "com/class_factory.h"
#include "system/file_name.h"

#include <velcoran/mesaje.h>

#include <algorithm>
#include <iterator>
#include <utility>

using namespace Qt::StringLiterals;

namespace velcoran::host {

namespace {

class Mesaje final : public com::Object<IMesaje> {
public:
    explicit Mesaje(std::shared_ptr<DialogScript> script) : m_script(std::move(script)) {}

    com::HResult Afiseaza(com::Bstr text, std::int16_t style, std::int16_t, com::Bstr title, std::int32_t, std::int32_t,
                          std::int32_t* result) override {
        return com::guarded([&] {
            constexpr std::int32_t kOkButton = 1;
            m_script->addMessage({com::toQString(text), style, com::toQString(title), u"clsMesaje"_s});
            if (result != nullptr) *result = kOkButton;
        });
    }

private:
    std::shared_ptr<DialogScript> m_script;
};

class ExportDialog final : public com::Object<IExportDialog> {
public:
    explicit ExportDialog(std::shared_ptr<DialogScript> script) : m_script(std::move(script)) {}

    com::HResult Choose(std::uintptr_t, const ExportFormat* formats, std::uint32_t formatCount, com::Bstr suggestedFile,
                        std::int32_t* type, com::Bstr* file) override {
        return com::guarded([&]() -> com::HResult {
            const auto answer = m_script->open(u"export"_s);
            if (!answer) return com::kFalse;
            QList<Format> offered;
            for (std::uint32_t index = 0; index < formatCount; ++index)
                offered.append({formats[index].type, QString::fromUtf16(formats[index].name),
                                QString::fromUtf16(formats[index].extension)});
            const QString name = answer->value(u"format"_s).toString();
            const Format* format = findFormat(offered, name);
            if (format == nullptr) throw base::Error(base::kInvalidProcedureCall, u"no format "_s + name);
            const QString chosen = answer->value(u"file"_s).toString();
            *type = format->type;
            *file = com::toText(system::fullName(chosen.isEmpty() ? com::toQString(suggestedFile) : chosen)).release();
            return com::kOk;
        });
    }

private:
    std::shared_ptr<DialogScript> m_script;
};

class PrintDialog final : public com::Object<IPrintDialog> {
public:
    explicit PrintDialog(std::shared_ptr<DialogScript> script) : m_script(std::move(script)) {}

    com::HResult Choose(std::uintptr_t, std::int32_t, PrintChoice* choice) override {
        return com::guarded([&]() -> com::HResult {
            const auto answer = m_script->open(u"print"_s);
            if (!answer) return com::kFalse;
            if (answer->contains(u"file"_s))
                com::replaceText(choice->file, system::fullName(answer->value(u"file"_s).toString()));
            choice->firstPage = answer->value(u"from"_s, 1).toInt();
            choice->lastPage = answer->value(u"to"_s, 0).toInt();
            choice->copies = answer->value(u"copies"_s, 1).toInt();
            return com::kOk;
        });
    }

private:
    std::shared_ptr<DialogScript> m_script;
};

class PrinterSetupDialog final : public com::Object<IPrinterSetupDialog> {
public:
    explicit PrinterSetupDialog(std::shared_ptr<DialogScript> script) : m_script(std::move(script)) {}

    com::HResult Choose(std::uintptr_t, PrinterSetup* setup) override {
        return com::guarded([&]() -> com::HResult {
            const auto answer = m_script->open(u"printersetup"_s);
            if (!answer) return com::kFalse;
            if (answer->contains(u"paper"_s)) com::replaceText(setup->paper, answer->value(u"paper"_s).toString());
            const QString orientation = answer->value(u"orientation"_s).toString();
            if (!orientation.isEmpty()) setup->orientation = orientation == u"landscape" ? kLandscape : kPortrait;
            return com::kOk;
        });
    }

private:
    std::shared_ptr<DialogScript> m_script;
};

}  // namespace

void DialogScript::prepare(const QString& dialog, const QVariantMap& answer) { m_answers.insert(dialog, answer); }

std::optional<QVariantMap> DialogScript::open(const QString& dialog) {
    m_dialogs.append(dialog);
    if (!m_answers.contains(dialog)) return std::nullopt;
    const QVariantMap answer = m_answers.take(dialog);
    if (answer.value(u"cancel"_s).toBool()) return std::nullopt;
    return answer;
}

void DialogScript::addMessage(const RecordedMessage& message) { m_messages.append(message); }

QList<RecordedMessage> DialogScript::takeMessages() { return std::exchange(m_messages, {}); }

QStringList DialogScript::takeDialogs() { return std::exchange(m_dialogs, {}); }

const Format* findFormat(const QList<Format>& formats, const QString& name) {
    for (QString Format::*member : {&Format::name, &Format::extension}) {
        const auto found = std::find_if(formats.begin(), formats.end(), [&](const Format& each) {
            return (each.*member).compare(name, Qt::CaseInsensitive) == 0;
        });
        if (found != formats.end()) return &*found;
    }
    return nullptr;
}

void registerDialogs(com::IHostObjects& objects, const std::shared_ptr<DialogScript>& script) {
    const std::pair<com::Guid, com::Ref<com::IClassFactory>> factories[] = {
        {kClassMesaje, com::makeFactory<Mesaje>(script)},
        {kClassExportDialog, com::makeFactory<ExportDialog>(script)},
        {kClassPrintDialog, com::makeFactory<PrintDialog>(script)},
        {kClassPrinterSetupDialog, com::makeFactory<PrinterSetupDialog>(script)},
    };
    for (const auto& [classId, factory] : factories)
        if (const com::HResult result = objects.Register(classId, factory.get()); com::failed(result))
            throw base::Error(com::numberOfResult(result), u"a dialog could not be registered"_s);
}

}  // namespace velcoran::host
