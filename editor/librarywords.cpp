#include "librarywords.h"

#include <sstream>

namespace {

char const kNameWords[] =
    "abs accumulate add align angle apply array attribute average axis bake band base bend bind "
    "blend blur bool bounds branch break bridge build cache camera cast catch cell chain channel "
    "clamp clip clone closest cloud cluster colour combine compare compose compress concat "
    "constrain convert copy count cross curl curve cycle damp date decay decode delay delta "
    "density depth diff dilate direction displace distance divide dot drop ease edge emit encode "
    "erode evaluate event exp expand extract face fade falloff field file filter find fit flip "
    "float flow fold force format fraction frame frequency gain gamma gate generate gradient "
    "graph grid group hash heat height hold hue image index input insert instance integer "
    "interpolate invert iterate join key kind lag lattice layer length lerp level light limit "
    "line list load local log loop map mask mass match matrix max mean merge mesh min mirror mix "
    "mod mul multiply name noise normal normalize note object octave offset order orient output "
    "pack parent particle path pattern peak pick pixel plane point pow project pulse quaternion "
    "query ramp random range rate read reduce reflect refract remap remove repeat resample reset "
    "resize rotate round route sample saturate scale scatter search select sequence shape shift "
    "shuffle sign signal sin slice smooth solve sort spawn speed sphere spline split spring "
    "state step string subtract sum surface sweep switch table tangent text texture threshold "
    "time toggle transform trim turbulence twist unit unpack value vector velocity vertex view "
    "volume warp wave weight while width window wrap write zip zone";

char const kTagWords[] =
    "2d 3d additive aggregate algebra alpha analysis angle animation approximate arithmetic array "
    "audio average axis basic bezier binary bitmap blend boolean boundary bounds branch buffer "
    "cache camera channel character chart circle clamp clock cloth collection collision colour "
    "combine comparison complex compositing condition constraint control conversion coordinates "
    "counter crowd curve cut cycle data date debug deform density depth derivative detail diffuse "
    "digital dimension direction discrete distance distribution dynamic easing edge effect "
    "emission encoding energy environment epsilon error event expensive experimental export "
    "expression fast feedback file filter flow fluid fold force format fractal frequency function "
    "gate generator geometry global gradient graph grid group hash helper hierarchy histogram "
    "identity image import index input instance integer integral interaction interpolation "
    "inverse iteration joint key kinematics label lattice layer layout legacy light limit line "
    "list local logic loop lookup magnitude mapping mask material mathematics matrix measure "
    "memory mesh metadata midi mirror modifier modulation morph motion music name network noise "
    "normal number numeric object offset operator optics order orientation oscillator output "
    "packing palette parallel parameter parsing particle path pattern periodic physics picture "
    "pixel point polar polygon precise primitive probability procedural projection quaternion "
    "query random range raster ratio rigging rotation sampling scalar scene sculpting selection "
    "sequence shading shape signal simulation skinning smoothing sound space spatial spectrum "
    "spline statistics string surface symmetry temporal text texture threshold time tool topology "
    "transform trigonometry unit user utility validation vector velocity visual volume wave";

std::vector<std::string> Split(char const* words)
{
    std::istringstream stream(words);
    std::vector<std::string> split;
    for (std::string word; stream >> word;)
        split.push_back(word);
    return split;
}

} // namespace

std::vector<std::string> const& NameWords()
{
    static std::vector<std::string> const words = Split(kNameWords);
    return words;
}

std::vector<std::string> const& TagWords()
{
    static std::vector<std::string> const words = Split(kTagWords);
    return words;
}
