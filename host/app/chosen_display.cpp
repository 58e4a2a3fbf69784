#include "chosen_display.h"

#include "base/error.h"
#include "system/display/qt_platforms.h"

#include <QGuiApplication>
#include <QStringList>

using namespace Qt::StringLiterals;

namespace velcoran::host {

namespace {

using system::DisplayProblem;

constexpr system::ProblemWords kProblems{{{
    {DisplayProblem::UnknownPlatform, u"a platform of Qt's that is unknown or cannot be checked"},
    {DisplayProblem::NoPlugin, u"Qt's plugin is missing or cannot be loaded"},
    {DisplayProblem::NoServer, u"nobody listens there"},
    {DisplayProblem::NoAnswer, u"the server does not answer"},
    {DisplayProblem::Refusal, u"the server refuses the connection"},
    {DisplayProblem::BrokenOff, u"the server breaks the connection off"},
    {DisplayProblem::NoScreen, u"the server has nowhere to show a window"},
    {DisplayProblem::ForeignRights, u"the process runs with another user's rights"},
    {DisplayProblem::NoDescriptors, u"the process has too many open files"},
    {DisplayProblem::QtFailure, u"the server no longer answers"},
}}};

[[noreturn]] void refuse(const QList<system::DisplayFault>& faults) {
    QStringList words;
    for (const system::DisplayFault& fault : faults) words.append(system::wordsOf(fault, kProblems));
    throw base::Error(base::kInvalidProcedureCall, u"there is no display: "_s + words.join(u"; "_s));
}

bool isDisplayNamed() {
    for (const char* variable : {"QT_QPA_PLATFORM", "DISPLAY", "WAYLAND_DISPLAY"})
        if (!qEnvironmentVariableIsEmpty(variable)) return true;
    return false;
}

system::Display choose(DisplayNeed need) {
    const bool isNamed = isDisplayNamed();
    if (need == DisplayNeed::Needed && !isNamed)
        throw base::Error(base::kInvalidProcedureCall, u"there is no display; export and drive work without one"_s);
    system::DisplaySearch search = system::findDisplay(isNamed ? system::qtPlatformList() : "offscreen");
    if (!search.display) refuse(search.faults);
    return std::move(*search.display);
}

}  // namespace

ChosenDisplay::ChosenDisplay(DisplayNeed need, const char* program) : m_display(choose(need)) {
    m_arguments.push_back(const_cast<char*>(program));
    for (QByteArray& argument : m_display.arguments) m_arguments.push_back(argument.data());
    m_count = static_cast<int>(m_arguments.size());
    m_arguments.push_back(nullptr);
}

void ChosenDisplay::confirm() {
    if (!system::isOpen(m_display)) refuse({{DisplayProblem::QtFailure, m_display.platform}});
    m_display.connection.reset();
}

bool hasDisplay() {
    const QString platform = QGuiApplication::platformName();
    return platform != u"offscreen" && platform != u"minimal";
}

}  // namespace velcoran::host
