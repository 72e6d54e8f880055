#pragma once

#include <QObject>

class CZdCtrl;
class ImageRouter;
class Station;
class TriggerDispatch;
class ksGlobalConfig;

/// Keeps the account of each station: triggers that its camera was given against images that came. GUI thread.
class StationAccounts : public QObject
{
    Q_OBJECT

public:
    /// All outlive the accounts.
    StationAccounts(const ksGlobalConfig& config, const CZdCtrl& controller, const TriggerDispatch& dispatch,
                    const ImageRouter& router);

private:
    /// Null when the controller has no station of that solution.
    Station* account(int station) const;

    const ksGlobalConfig& m_config;
    const CZdCtrl& m_controller;
};
