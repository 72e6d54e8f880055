#include "Harness.h"
#include "config/ksGlobalConfig.h"

FUZZ_TARGET(globalconfig)
{
    fuzz::homeFile("/user/globalConfig.json", bytes);
    ksGlobalConfig read;
    read.load();
    for (int station : {1, 2}) {
        const Calibration calibration = read.calibration(station);
        const auto back = calibration.toPixel(calibration.toMachine({100, 100}));
        fuzz::require(!back || (qIsFinite(back->x()) && qIsFinite(back->y())), "a place in the image is a number");
    }
    const QByteArray text = read.text();
    fuzz::homeFile("/user/globalConfig.json", text);
    ksGlobalConfig again;
    again.load();
    fuzz::require(again.text() == text, "what is written is read back as it was");
    for (int station : {1, 2})
        fuzz::require(read.calibration(station).problem().isEmpty() == again.calibration(station).problem().isEmpty(),
                      "a calibration that is not usable stays so");
}
