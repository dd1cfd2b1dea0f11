#include "look/tab_cross_images.h"

namespace orvix1 {
namespace detail {

// Each cross runs from a black outline through its colours to a white
// highlight on the upper-left edge of the strokes; '.' is transparent.
const char* const tab_cross_normal_xpm[] = {
    "9 10 8 1",    ". c None",    "# c #000000", "a c #3C3C3C", "b c #5A5A5A",
    "c c #808080", "d c #A8A8A8", "e c #D4D4D4", "w c #FFFFFF",
    "##.....##",   "#wa...ew#",   ".#da.eb#.",   "..#dcb#..",   "...#c#...",
    "..#ecb#..",   ".#dc.cb#.",   "#wc...cb#",   "##.....##",   ".........",
};

const char* const tab_cross_hovered_xpm[] = {
    "9 10 8 1",    ". c None",    "# c #000000", "a c #B05A00", "b c #E08A10",
    "c c #F5B040", "d c #FAD070", "e c #FFF0B0", "w c #FFFFFF",
    "##.....##",   "#wa...ew#",   ".#da.eb#.",   "..#dcb#..",   "...#c#...",
    "..#ecb#..",   ".#dc.cb#.",   "#wc...cb#",   "##.....##",   ".........",
};

const char* const tab_cross_pressed_xpm[] = {
    "9 10 8 1",    ". c None",    "# c #000000", "a c #800000", "b c #B01010",
    "c c #E03020", "d c #F06030", "e c #F8A060", "w c #FFFFFF",
    "##.....##",   "#wa...ew#",   ".#da.eb#.",   "..#dcb#..",   "...#c#...",
    "..#ecb#..",   ".#dc.cb#.",   "#wc...cb#",   "##.....##",   ".........",
};

}  // namespace detail
}  // namespace orvix1
