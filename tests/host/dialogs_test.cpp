#include "host/drive/dialogs.h"

#include "com/host_objects.h"
#include "com/object.h"

#include "support/test_data.h"

#include <velcoran/mesaje.h>

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

namespace velcoran::host {
namespace {

/// Where the dialogs register, in place of the component.
class Objects final : public com::Object<com::IHostObjects> {
public:
    com::HResult Register(const com::Guid& classId, com::IClassFactory* factory) override {
        objects.add(classId, com::Ref<com::IClassFactory>(factory));
        return com::kOk;
    }
    com::HResult Revoke(const com::Guid&) override { return com::kFalse; }

    com::HostObjects objects;
};

struct Dialogs : testing::Test {
    void SetUp() override { registerDialogs(*registered, script); }

    std::shared_ptr<DialogScript> script = std::make_shared<DialogScript>();
    com::Ref<Objects> registered = com::makeObject<Objects>();
};

TEST_F(Dialogs, aMessageIsRecordedAndTakenAsRead) {
    const auto mesaje = registered->objects.create<IMesaje>(kClassMesaje);
    ASSERT_TRUE(mesaje);
    std::int32_t button = 0;
    EXPECT_EQ(
        mesaje->Afiseaza(com::toText(u"Gata, ș"_s).get(), kStilError, 0, com::toText(u"T"_s).get(), 0, 0, &button),
        com::kOk);
    EXPECT_EQ(button, 1);
    const auto messages = script->takeMessages();
    ASSERT_EQ(messages.size(), 1);
    EXPECT_EQ(messages[0].text, u"Gata, ș"_s);
    EXPECT_EQ(messages[0].style, 16);
    EXPECT_EQ(messages[0].source, u"clsMesaje"_s);
    EXPECT_TRUE(script->takeMessages().isEmpty());
}

TEST_F(Dialogs, anExportTakesItsPreparedAnswerOnce) {
    const auto dialog = registered->objects.create<IExportDialog>(kClassExportDialog);
    ASSERT_TRUE(dialog);
    const ExportFormat formats[] = {{5, u"Adobe", u"pdf"}, {36, u"Foaie de calcul", u"xlsx"}};
    std::int32_t type = 0;
    com::Text file;
    const auto choose = [&] {
        return dialog->Choose(0, formats, 2, com::toText(u"/tmp/raport.pdf"_s).get(), &type, file.receive());
    };
    EXPECT_EQ(choose(), com::kFalse);
    script->prepare(u"export"_s, {{u"format"_s, u"XLSX"_s}, {u"file"_s, u"/tmp/a.xlsx"_s}});
    EXPECT_EQ(choose(), com::kOk);
    EXPECT_EQ(type, 36);
    EXPECT_EQ(com::toQString(file.get()), u"/tmp/a.xlsx"_s);
    EXPECT_EQ(choose(), com::kFalse) << "an answer serves once";
    script->prepare(u"export"_s, {{u"format"_s, u"foaie de calcul"_s}});
    EXPECT_EQ(choose(), com::kOk);
    EXPECT_EQ(com::toQString(file.get()), u"/tmp/raport.pdf"_s) << "the suggested file";
    script->prepare(u"export"_s, {{u"format"_s, u"doc"_s}});
    EXPECT_TRUE(com::failed(choose())) << "no such format";
    script->prepare(u"export"_s, {{u"format"_s, u"pdf"_s}, {u"cancel"_s, true}});
    EXPECT_EQ(choose(), com::kFalse);
    EXPECT_EQ(script->takeDialogs().size(), 6);
}

TEST_F(Dialogs, printingTakesPagesAndPaper) {
    const auto print = registered->objects.create<IPrintDialog>(kClassPrintDialog);
    const auto setUp = registered->objects.create<IPrinterSetupDialog>(kClassPrinterSetupDialog);
    ASSERT_TRUE(print && setUp);
    script->prepare(u"print"_s, {{u"file"_s, u"/tmp/p.pdf"_s}, {u"from"_s, 2}, {u"to"_s, 3}});
    PrintChoice choice{};
    EXPECT_EQ(print->Choose(0, 9, &choice), com::kOk);
    const com::Text file = [&] {
        com::Text text;
        *text.receive() = choice.file;
        return text;
    }();
    EXPECT_EQ(com::toQString(file.get()), u"/tmp/p.pdf"_s);
    EXPECT_EQ(choice.firstPage, 2);
    EXPECT_EQ(choice.lastPage, 3);
    EXPECT_EQ(choice.copies, 1);

    PrinterSetup setup{};
    setup.orientation = kPortrait;
    EXPECT_EQ(setUp->Choose(0, &setup), com::kFalse);
    script->prepare(u"printersetup"_s, {{u"orientation"_s, u"landscape"_s}});
    EXPECT_EQ(setUp->Choose(0, &setup), com::kOk);
    EXPECT_EQ(setup.orientation, kLandscape);
    EXPECT_EQ(setup.paper, nullptr) << "what is not prepared stays";
    EXPECT_EQ(script->takeDialogs(), (QStringList{u"print"_s, u"printersetup"_s, u"printersetup"_s}));
}

}  // namespace
}  // namespace velcoran::host
