#pragma once

#include <opencv2/core.hpp>

#include <cstdint>
#include <string>
#include <vector>

/// Everything that decides what one rendered wheel looks like. Lengths of a FaceSpec are fractions of the rim radius,
/// all others are pixels; angles are degrees, 0 along +x, counter-clockwise as seen on the screen; gray values 0 to
/// 255.
namespace wheel {

enum class Pattern { Spokes, TwinSpokes, Mesh, Slots, Drilled, Solid };

/// The shape of a design: what all wheels of one model have in common.
struct FaceSpec
{
    Pattern pattern = Pattern::Spokes;
    int count = 5;             ///< spokes, pairs of spokes, windows or drillings
    double spokeHub = 0.085;   ///< half width of a spoke (or bar) at the hub
    double spokeRim = 0.055;   ///< half width at the rim; for windows half their length along the circle
    double pairGap = 0.07;     ///< half distance of the two spokes of a pair at the hub
    double pairGapRim = 0.07;  ///< the same at the rim
    double twist = 0;          ///< degrees by which the spokes bend from hub to rim
    double windowInner = 0.27; ///< windows begin
    double windowOuter = 0.75; ///< windows end
    double fillet = 0.04;      ///< rounding of the windows' corners
    double edge = 0.02;        ///< width of the rounding of the spokes' edges
    double ledgeInner = 0.79;
    double lipInner = 0.94; ///< the ledge, where the valve hole is, ends here; the lip reaches to 1
    double hubHeight = 0.05;
    double dish = 0.10; ///< how much deeper the spokes' outer ends lie than the hub; negative: higher
    double ledgeSlope = 0.10;
    double bore = 0.10;
    int bolts = 5;
    double boltRing = 0.185;
    double boltRadius = 0.024;
    double boltSeat = 0.012; ///< width of the conical seat
    double ring = 0.868;     ///< hub centre to centre of the valve hole
    double hole = 0.020;     ///< radius of the valve hole
    double machined = 0.6;   ///< turning marks: 0 cast or painted, 1 freshly turned
    double albedo = 0.72;
};

enum class Valve { None, Rubber, Metal };

/// What surrounds the mouth: a chamfer bright towards the light, an even ring, or a wider flat step below the surface.
enum class HoleEdge { Crescent, Ring, Counterbore };

/// What is seen in an open hole: darkness, a gray ground, light from below, or a wall lit all round.
enum class HoleInside { Dark, Gray, Bright, Lit };

/// The valve hole of one wheel.
struct HoleSpec
{
    bool present = true;
    double angle = 0;      ///< direction from the hub centre
    double ringRadius = 0; ///< hub centre to hole centre
    double radius = 16;    ///< semi-major axis of the mouth, which is the innermost edge
    double axisRatio = 1;  ///< semi-minor by semi-major axis
    double axisTurn = 0;   ///< direction of the minor axis against the direction from the hub
    HoleEdge edge = HoleEdge::Crescent;
    double chamfer = 3; ///< width of the chamfer around the mouth; 0: sharp
    double chamferShine = 0.5;
    double chamferGray = 1; ///< brightness of the chamfer against the surface
    double step = 0;        ///< width of the counterbore's floor around the chamfer
    double stepDepth = 0;   ///< width of the shadow that the counterbore's wall throws on its floor
    double stepGray = 1;    ///< brightness of the floor against the surface
    double stepShadow = 0;  ///< part of the floor's brightness that the shadow takes
    cv::Point2d edgeShift;  ///< by how much the outer edge is seen shifted against the mouth
    HoleInside inside = HoleInside::Dark;
    cv::Point2d wall;         ///< by how much the hole's far end is seen shifted
    double wallGray = -1;     ///< negative: as the surface's albedo makes it
    double wallShading = 0.9; ///< part of the wall's brightness that is missing where it turns from the light
    double depthGray = 14;
    double depthGradient = 0; ///< change of that across the radius, as a fraction
    double depthTexture = 0;
    Valve valve = Valve::None;
    double twin = 0; ///< degrees from this hole to a second, equal one; 0: there is none

    /// Semi-major axis of the outermost edge.
    double reach() const { return radius + chamfer + step; }
};

/// What lies about the valve hole without being one. Vents and drains are holes as well; they never share both ring and
/// size with the valve hole.
enum class MarkKind { Vent, Drain, Dimple, EjectorPin, PaintDot, Dial, Sticker, Blot, Screw };

struct MarkSpec
{
    MarkKind kind = MarkKind::Drain;
    double angle = 0;
    double ringRadius = 0; ///< hub centre to its own
    double radius = 5;
    double gray = 1; ///< brightness against the surface; for holes the gray value seen through them
    std::uint64_t seed = 0;
};

/// How the wheel is lit; fractions of the surface's brightness where nothing else is said.
struct LightSpec
{
    double azimuth = 120; ///< where the strongest light comes from
    double ambient = 0.45;
    double diffuse = 0.55;
    double specular = 0.35;
    double gradient = 0; ///< brightness change from the image centre to its edge, as a fraction
    double gradientAzimuth = 0;
    double vignette = 0;
    int glares = 0;
    double exposure = 1; ///< factor on everything; see ledgeGray()
};

/// What else is seen, and what lies on the wheel.
struct SceneSpec
{
    double background = 50;
    double backgroundTexture = 6;
    int rollers = 0;           ///< conveyor rollers seen beside and below the wheel
    double shadow = 0;         ///< darkening of the background beside the wheel
    double floor = 30;         ///< what is seen through the windows
    double perspective = 0.03; ///< by how much the far edge of a window is seen nearer to the image centre
    int letterings = 0;
    int dirt = 0;
    int scratches = 0;
    int drains = 0; ///< small drain holes off the valve hole's ring
    std::vector<MarkSpec> marks;
    double grain = 0.04;
};

/// The camera: lens, shutter and sensor.
struct OpticsSpec
{
    double blur = 0.6;   ///< sigma of the lens blur
    double motion = 0;   ///< degrees that the wheel turns while the shutter is open, the truth in their middle
    double noise = 2;    ///< sigma
    double contrast = 1; ///< 1: full range
    double pedestal = 0; ///< gray value of black
};

/// One wheel in one image.
struct WheelSpec
{
    cv::Size size{2448, 2048};
    std::string design; ///< key of the design, see designs()
    cv::Point2d hub;
    double rimRadius = 800;
    double scale = 1; ///< size against the nominal size of the model
    double turn = 0;  ///< direction of the first spoke
    FaceSpec face;
    HoleSpec hole;
    LightSpec light;
    SceneSpec scene;
    OpticsSpec optics;
    std::uint64_t seed = 0; ///< of everything random in texture and noise
};

/// A model as the plant knows it.
struct Design
{
    std::string key;  ///< for command lines
    std::string name; ///< UTF-8, as in the model library
    int plcIndex = 0;
    FaceSpec face;
};

/// All designs, in the order of their PLC indices.
const std::vector<Design>& designs();

/// The design of that key or name; null when there is none.
const Design* findDesign(const std::string& keyOrName);

} // namespace wheel
