#pragma once

#include "db/connection.h"

#include <QDate>
#include <QVariant>
#include <QWidget>

#include <memory>

namespace velcoran::form {

class LoadedWindow;
class Surroundings;
struct Members;

/// The report window. The object lives as long as its thread uses the component; its controls exist only while it is
/// loaded: Incarca loads them, closing unloads them.
///
/// The properties are what a host's script may read of the window; lengths are whole twips.
class RptStoc : public QWidget {
    Q_OBJECT
    Q_PROPERTY(bool loaded READ isLoaded)
    Q_PROPERTY(QString caption READ windowTitle)
    Q_PROPERTY(bool maximized READ isMaximized)
    Q_PROPERTY(int innerWidth READ innerWidth)
    Q_PROPERTY(int innerHeight READ innerHeight)
    Q_PROPERTY(QString pointer READ pointer)
    Q_PROPERTY(QString sTipRaport READ sTipRaport)
    Q_PROPERTY(int iAn READ iAn)
    Q_PROPERTY(QString sSoc READ sSoc)
    Q_PROPERTY(bool bRaportIncarcat READ bRaportIncarcat)
    Q_PROPERTY(QString sCodProdus READ sCodProdus)
    Q_PROPERTY(QString sCodProducator READ sCodProducator)
    Q_PROPERTY(QString sCodClient READ sCodClient)
    Q_PROPERTY(QString sCodAgent READ sCodAgent)
    Q_PROPERTY(QString sCautare READ sCautare)
    Q_PROPERTY(bool priza READ hasPriza)
    Q_PROPERTY(QVariant rptFacturi READ rptFacturi)
    Q_PROPERTY(bool rsLookup READ hasLookupRows)
    Q_PROPERTY(bool objMesaje READ hasMesaje)

public:
    /// @param surroundings  outlives the window
    explicit RptStoc(Surroundings& surroundings);
    ~RptStoc() override;

    /// Gives the window the host's connection; called just before Incarca. Shared, not tested; may be null.
    /// @throws Error kInvalidProcedureCall while a statement of the window runs; it keeps its connection then
    void setPriza(db::Connection priza);
    /// Loads the window where it is not loaded, shows it and sets it up for a report kind. What is left standing ends
    /// first: a report that loads, an open picker, the wait state of a failed run.
    /// @param argTipRaport  "Import" or "Export", compared exactly; any other value gives a mixed window
    /// @throws Error of a failing step; the window stays as far as it got. Error kInvalidProcedureCall when called
    /// while
    ///         a statement of the window runs. Cancelled when the user closed the window meanwhile
    void Incarca(const QString& argTipRaport, QDate DataProgram, const QString& Soc);
    [[nodiscard]] bool isLoaded() const;
    /// True while the window is loaded, or a handler of it has still to return after it was closed.
    [[nodiscard]] bool isInUse() const;
    /// Closes the window. While one of its statements runs, that is cancelled first and the close follows.
    void CloseForm();

protected:
    bool event(QEvent* event) override;
    void closeEvent(QCloseEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void paintEvent(QPaintEvent* event) override;

private:
    class Private;

    [[nodiscard]] int innerWidth() const;
    [[nodiscard]] int innerHeight() const;
    [[nodiscard]] QString pointer() const;
    [[nodiscard]] QString sTipRaport() const;
    [[nodiscard]] int iAn() const;
    [[nodiscard]] QString sSoc() const;
    [[nodiscard]] bool bRaportIncarcat() const;
    [[nodiscard]] QString sCodProdus() const;
    [[nodiscard]] QString sCodProducator() const;
    [[nodiscard]] QString sCodClient() const;
    [[nodiscard]] QString sCodAgent() const;
    [[nodiscard]] QString sCautare() const;
    [[nodiscard]] bool hasPriza() const;
    [[nodiscard]] QVariant rptFacturi() const;
    [[nodiscard]] bool hasLookupRows() const;
    [[nodiscard]] bool hasMesaje() const;

    std::unique_ptr<Private> m_private;
};

}  // namespace velcoran::form
