#include "dialogs/cameras/CameraNames.h"

namespace CameraNames {
namespace {

template <typename Code>
struct Named
{
    Code code;
    const char* name;
};

constexpr Named<CameraType> kTypes[] = {
    {CameraType::Unknown, "Unknown"}, {CameraType::Virtual, "Virtual Camera"},
    {CameraType::BitFlow, "BitFlow"}, {CameraType::Gige, "Gige"},
    {CameraType::Usb, "USB Camera"},  {CameraType::Hik, "HIK"},
    {CameraType::Vimba, "Vimba"},     {CameraType::Baumer, "Baumer"},
    {CameraType::AdLink, "AdLink"},   {CameraType::DaHua, "DaHua"},
    {CameraType::Basler, "Basler"},   {CameraType::PtGray, "PtGray"},
    {CameraType::Euresys, "Euresys"}, {CameraType::Dalsa, "Dalsa"},
};

constexpr Named<CameraState> kStates[] = {
    {CameraState::Uninitialized, "Uninitialized"},
    {CameraState::Initialized, "Initialized"},
    {CameraState::Opened, "Opened"},
    {CameraState::Running, "Running"},
    {CameraState::Paused, "Paused"},
    {CameraState::Closed, "Closed"},
};

constexpr Named<PixelFormat> kFormats[] = {
    {PixelFormat::None, "None"},   {PixelFormat::Gray8, "GRAY8"},   {PixelFormat::Rgb24, "RGB24"},
    {PixelFormat::Rgb32, "RGB32"}, {PixelFormat::Gray16, "GRAY16"}, {PixelFormat::Rgb48, "RGB48"},
    {PixelFormat::Bgr24, "BGR24"}, {PixelFormat::Bgr32, "BGR32"},
};

/// The entry of a code; the first for a code that a module made up.
template <typename Code, size_t count>
const Named<Code>& find(const Named<Code> (&all)[count], Code code)
{
    for (const Named<Code>& one : all) {
        if (one.code == code)
            return one;
    }
    return all[0];
}

} // namespace

const QVector<CameraType>& types()
{
    static const QVector<CameraType> all = [] {
        QVector<CameraType> types;
        for (const auto& one : kTypes)
            types.append(one.code);
        return types;
    }();
    return all;
}

QString of(CameraType type)
{
    const auto& known = find(kTypes, type);
    return QStringLiteral("%1(%2)").arg(QLatin1String(known.name)).arg(int(known.code));
}

QString of(CameraState state)
{
    return QLatin1String(find(kStates, state).name);
}

QString of(PixelFormat format)
{
    return QLatin1String(find(kFormats, format).name);
}

} // namespace CameraNames
