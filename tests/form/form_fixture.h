#pragma once

#include "form/panel/control_tree.h"
#include "form/rpt_stoc.h"
#include "form/run/surroundings.h"
#include "support/fake_connection.h"
#include "support/test_data.h"

#include <QApplication>
#include <QTest>

#include <gtest/gtest.h>

namespace velcoran::tests {

/// A message that the window showed.
struct ShownMessage {
    QString text;
    int style = 0;
    QString title;
    friend bool operator==(const ShownMessage&, const ShownMessage&) = default;
};
void PrintTo(const ShownMessage& message, std::ostream* stream);

class RecordingSurroundings final : public form::Surroundings {
public:
    com::Ref<IMesaje> newMesaje() override;
    com::Ref<IExportDialog> newExportDialog() override { return nullptr; }
    com::Ref<IPrintDialog> newPrintDialog() override { return nullptr; }
    com::Ref<IPrinterSetupDialog> newPrinterSetupDialog() override { return nullptr; }

    QList<ShownMessage> messages;
    std::function<void()> whileShowing;  ///< called inside each message dialog
};

/// A window over a scripted connection: year 2003, five warehouses, two-row answers for the lookups.
class FormTest : public testing::Test {
protected:
    FormTest();

    void setUpFor(const QString& kind, QDate date = QDate(2003, 7, 15), const QString& soc = {});
    /// The error of a set-up that fails; nothing when it succeeds.
    std::optional<base::Error> failureOf(const QString& kind, QDate date = QDate(2003, 7, 15));
    /// Replaces the answer to "SELECT An FROM An".
    void answerYear(const FakeCell& year, ColumnType type = ColumnType::Int64);

    template <class Class>
    Class* find(const char* name) {
        return window.findChild<Class*>(QString::fromLatin1(name));
    }
    controls::TextBox* box(const char* name) { return find<controls::TextBox>(name); }
    controls::DropDownList* list(const char* name) { return find<controls::DropDownList>(name); }
    controls::Frame* frame(const char* name) { return find<controls::Frame>(name); }
    QString caption(const char* name) {
        return find<QWidget>(name)->property("controlState").toMap()[QStringLiteral("caption")].toString();
    }
    bool isShown(const char* name) { return !find<QWidget>(name)->isHidden(); }
    bool dataChanged(const char* name) { return box(name)->isDataChanged(); }
    QString member(const char* name) { return window.property(name).toString(); }

    /// Name of the control that has the focus; empty for none.
    QString focus();
    void giveFocus(const char* name) { find<QWidget>(name)->setFocus(); }
    /// Presses and releases a key where the focus is.
    void press(int key, Qt::KeyboardModifiers modifiers = Qt::NoModifier);
    void type(const QString& text);
    /// Holds a key down: the press, then auto-repeat presses, each where the focus or an open list is by then.
    void hold(int key, const QString& text, int repeats = 3);
    /// The widget that gets the keys now.
    static QWidget* keyReceiver();
    /// A double click as the window system brings it to the window. @return true when its second press gets there
    bool doubleClick(QWidget* widget, QPoint place);
    /// Puts a picked value into a field, as the picker does.
    void setPicked(const char* name, const QString& text);
    /// The texts that reached the connection since the last call.
    QStringList statements();
    bool waitFor(const std::function<bool()>& condition) { return QTest::qWaitFor(condition, 10000); }

    RecordingSurroundings surroundings;
    com::Ref<FakeConnection> connection = FakeConnection::create();
    form::RptStoc window{surroundings};
};

}  // namespace velcoran::tests
