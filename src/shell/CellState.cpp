#include "shell/CellState.h"

#include "config/ksGlobalConfig.h"
#include "config/ksSysConfig.h"
#include "workflow/Cell.h"
#include "workflow/CellForwarding.h"

#include <QCoreApplication>

#include <algorithm>

namespace {

struct FaceTexts
{
    Q_DECLARE_TR_FUNCTIONS(StateBar)
};

bool concerns(const Alarm& alarm, const CellState::Camera& camera)
{
    const bool ofCamera = alarm.kind == Alarm::CameraLost || alarm.kind == Alarm::CameraFloods;
    const bool ofStation = alarm.kind == Alarm::NoImage || alarm.kind == Alarm::CameraUnknown;
    return (ofCamera && alarm.subject == camera.key) || (ofStation && alarm.subject == QString::number(camera.station));
}

StateFace plcFace(const CellState& state)
{
    StateFace face{"plcPill", "plc", "actionPlc", QStringLiteral("PLC"), FaceTexts::tr("等待"), StateFace::Off, {}};
    if (state.isLinkKnown) {
        face.word = state.isLinkUp ? FaceTexts::tr("正常") : FaceTexts::tr("断开");
        face.sign = state.isLinkUp ? StateFace::Good : StateFace::Bad;
    }
    face.hint = FaceTexts::tr("PLC通信；点按打开PLC监视");
    return face;
}

StateFace cameraFace(const CellState::Camera& camera)
{
    StateFace face{camera.station == 1 ? "camera1Pill" : "camera2Pill",
                   "camera",
                   "actionCamera",
                   FaceTexts::tr("相机%1").arg(camera.station),
                   FaceTexts::tr("正常"),
                   StateFace::Good,
                   FaceTexts::tr("工位%1的相机%2；点按打开相机管理").arg(camera.station).arg(camera.key)};
    if (camera.isGood && !camera.key.isEmpty())
        return face;
    face.word = camera.key.isEmpty() ? FaceTexts::tr("未设置") : FaceTexts::tr("异常");
    face.sign = camera.key.isEmpty() ? StateFace::Off : StateFace::Bad;
    return face;
}

StateFace modeFace(const CellState& state)
{
    StateFace face{"modePill",
                   "run",
                   "actionSystem",
                   FaceTexts::tr("模式"),
                   FaceTexts::tr("在线"),
                   StateFace::Good,
                   FaceTexts::tr("检测模式；点按打开系统设置")};
    if (state.isTesting)
        return {face.name,
                "test",
                "actionTest",
                face.caption,
                FaceTexts::tr("测试"),
                StateFace::Caution,
                FaceTexts::tr("测试运行中；点按打开测试模式")};
    if (!state.isOnline) {
        face.word = FaceTexts::tr("离线");
        face.sign = StateFace::Caution;
    }
    return face;
}

StateFace diskFace(const CellState& state)
{
    StateFace face{"diskPill",
                   "disk",
                   "actionSystem",
                   FaceTexts::tr("磁盘"),
                   FaceTexts::tr("等待"),
                   StateFace::Off,
                   FaceTexts::tr("图像磁盘的剩余空间；点按打开系统设置")};
    if (state.freeMiB >= 0) {
        face.word = QStringLiteral("%1 GB").arg(state.freeMiB / 1024);
        face.sign = StateFace::Good;
    }
    if (!state.isDiskGood) {
        face.word = state.freeMiB >= 0 ? face.word : FaceTexts::tr("异常");
        face.sign = StateFace::Bad;
    }
    return face;
}

StateFace recordFace(const CellState& state)
{
    StateFace face{"recordPill",
                   "record",
                   "actionResults",
                   FaceTexts::tr("记录"),
                   state.keepsImages ? FaceTexts::tr("结果+图像") : FaceTexts::tr("仅结果"),
                   StateFace::Good,
                   FaceTexts::tr("结果和图像的保存；点按打开检测结果")};
    if (!state.isRecording) {
        face.word =
            state.resultsWaiting > 0 ? FaceTexts::tr("待写%1").arg(state.resultsWaiting) : FaceTexts::tr("异常");
        face.sign = StateFace::Bad;
    }
    return face;
}

/// A few rows are always on their way.
StateFace plantFace(const CellState& state)
{
    constexpr qint64 few = 100;
    StateFace face{"plantPill",
                   "up",
                   "actionSystem",
                   FaceTexts::tr("工厂"),
                   state.isPlantThere ? FaceTexts::tr("正常") : FaceTexts::tr("断开"),
                   state.isPlantThere ? StateFace::Good : StateFace::Caution,
                   state.plantHint.isEmpty() ? FaceTexts::tr("记录转发；点按打开系统设置") : state.plantHint};
    if (state.plantWaiting > (state.isPlantThere ? few : 0))
        face.word = FaceTexts::tr("待发%1").arg(state.plantWaiting);
    if (state.isPlantTroubled)
        face.sign = StateFace::Bad;
    return face;
}

StateFace userFace(const CellState& state)
{
    const bool nobody = state.user.isEmpty();
    return {"userPill",
            "login",
            "main_Login_action",
            FaceTexts::tr("用户"),
            nobody ? FaceTexts::tr("未登录") : state.user,
            nobody ? StateFace::Off : StateFace::Good,
            nobody ? FaceTexts::tr("点按登录") : FaceTexts::tr("%1；点按注销").arg(state.user)};
}

StateFace licenceFace(const CellState& state)
{
    return {"licencePill",
            "register",
            "actionRegister",
            FaceTexts::tr("授权"),
            state.isRegistered ? FaceTexts::tr("已注册") : FaceTexts::tr("未注册"),
            state.isRegistered ? StateFace::Good : StateFace::Caution,
            FaceTexts::tr("软件授权；点按打开注册")};
}

StateFace alarmFace(const CellState& state)
{
    const bool none = state.alarms == 0;
    return {"alarmPill",
            "alarm",
            "actionAlarms",
            FaceTexts::tr("报警"),
            none ? FaceTexts::tr("无") : FaceTexts::tr("%1条").arg(state.alarms),
            none ? StateFace::Good : StateFace::Bad,
            FaceTexts::tr("报警；点按打开报警记录")};
}

} // namespace

void CellState::read(Cell& cell, const ksGlobalConfig& config, const ksSysConfig& settings)
{
    const AlarmBook& book = cell.alarms();
    const QVector<Alarm>& raised = book.alarms();
    alarms = int(std::count_if(raised.begin(), raised.end(), [](const Alarm& alarm) { return !alarm.isQuiet(); }));
    for (Camera& camera : cameras) {
        camera.key = config.station(camera.station).camKey;
        camera.isGood = std::none_of(raised.begin(), raised.end(),
                                     [&camera](const Alarm& alarm) { return concerns(alarm, camera); });
    }
    isOnline = config.onlineMode;
    keepsImages =
        settings.saveSrcImage[0] || settings.saveSrcImage[1] || settings.saveRltImage[0] || settings.saveRltImage[1];
    isDiskGood = !book.lasts(Alarm::DiskLow) && !book.lasts(Alarm::ImagesUnwritable);
    isRecording =
        !book.lasts(Alarm::ResultsWaiting) && !book.lasts(Alarm::ImagesUnwritable) && !book.lasts(Alarm::ImagesGivenUp);
    if (const CellForwarding* forwarding = cell.forwarding()) {
        const ForwardStatus status = forwarding->status();
        isForwarding = status.on;
        isPlantThere = status.connected && status.trouble.isEmpty();
        isPlantTroubled = status.wantsEngineer;
        plantWaiting = status.waiting;
        plantHint = status.trouble;
    }
    if (const CellRecords* records = cell.records()) {
        const CellRecords::Health health = records->health();
        freeMiB = health.freeMiB;
        resultsWaiting = health.resultsWaiting;
    }
}

QVector<StateFace> facesOf(const CellState& state)
{
    QVector<StateFace> faces{plcFace(state)};
    for (const CellState::Camera& camera : state.cameras)
        faces << cameraFace(camera);
    faces << modeFace(state) << diskFace(state) << recordFace(state);
    if (state.isForwarding)
        faces << plantFace(state);
    faces << userFace(state) << licenceFace(state) << alarmFace(state);
    return faces;
}
