#pragma once

/// Kinds of cameras, as configuration files and interfaces carry them.
enum class CameraType : int {
    Unknown = 0,
    Virtual = 100,
    BitFlow = 110,
    Gige = 120,
    Usb = 130,
    Hik = 140,
    Vimba = 150,
    Baumer = 160,
    AdLink = 170,
    DaHua = 180,
    Basler = 190,
    PtGray = 200,
    Euresys = 220,
    Dalsa = 230,
};

/// The names under which types are shown, the same in every language, in the order of their codes.
struct CameraTypeName
{
    CameraType type;
    const char* name;
};
constexpr CameraTypeName cameraTypeNames[] = {
    {CameraType::Unknown, "Unknown"}, {CameraType::Virtual, "Virtual Camera"},
    {CameraType::BitFlow, "BitFlow"}, {CameraType::Gige, "Gige"},
    {CameraType::Usb, "USB Camera"},  {CameraType::Hik, "HIK"},
    {CameraType::Vimba, "Vimba"},     {CameraType::Baumer, "Baumer"},
    {CameraType::AdLink, "AdLink"},   {CameraType::DaHua, "DaHua"},
    {CameraType::Basler, "Basler"},   {CameraType::PtGray, "PtGray"},
    {CameraType::Euresys, "Euresys"}, {CameraType::Dalsa, "Dalsa"},
};

enum class CameraState : int { Uninitialized = 0, Initialized, Opened, Running, Paused, Closed };

enum class PixelFormat : int {
    None = 0,
    Gray8 = 1,
    Rgb24 = 2,
    Rgb32 = 3,
    Gray16 = 4,
    Rgb48 = 5,
    Bgr24 = 11,
    Bgr32 = 12,
};
