#pragma once

#include <QObject>

class QKeyEvent;

namespace velcoran::form {

class ControlTree;

/// The viewer's keys on Command1, which stands in the viewer's own band: while the report is in view they work the
/// report from there too. The keys of a button, Tab, Enter and the blank, stay the button's.
class ReportKeys final : public QObject {
public:
    explicit ReportKeys(const ControlTree& controls);

protected:
    bool eventFilter(QObject* object, QEvent* event) override;

private:
    const ControlTree& m_controls;
};

}  // namespace velcoran::form
