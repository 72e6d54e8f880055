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
