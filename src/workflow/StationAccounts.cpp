#include "workflow/StationAccounts.h"

#include "config/ksGlobalConfig.h"
#include "workflow/CZdCtrl.h"
#include "workflow/ImageRouter.h"
#include "workflow/Station.h"
#include "workflow/TriggerDispatch.h"

StationAccounts::StationAccounts(const ksGlobalConfig& config, const CZdCtrl& controller,
                                 const TriggerDispatch& dispatch, const ImageRouter& router)
    : m_config(config)
    , m_controller(controller)
{
    connect(&dispatch, &TriggerDispatch::captureStarted, this, [this](int station) {
        if (Station* own = account(station))
            emit own->sgaddTrigCount(1);
    });
    connect(&router, &ImageRouter::imageArrived, this, [this](int station) {
        if (Station* own = account(station))
            emit own->sgaddRevCount(1);
    });
}

Station* StationAccounts::account(int station) const
{
    return m_controller.stationObject(m_config.station(station).solution);
}
