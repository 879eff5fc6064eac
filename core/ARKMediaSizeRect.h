#pragma once
// The core framework's four-number rectangle in PostScript points, in the
// framework's flipped coordinates (top 0, bottom the height).

namespace com_qv_print_driver_core_cpp_util_v1 {

struct ARKMediaSizeRect {
  double top = 0;
  double left = 0;
  double bottom = 0;
  double right = 0;
};

// The rectangle whose four members are the arguments in their order.
inline ARKMediaSizeRect RKMediaSizeRectMake(double top, double left, double bottom, double right) {
  return ARKMediaSizeRect{top, left, bottom, right};
}

// Exact comparison of the four members.
inline bool RKMediaSizeRectIsEqualToRect(const ARKMediaSizeRect& a, const ARKMediaSizeRect& b) {
  return a.top == b.top && a.left == b.left && a.bottom == b.bottom && a.right == b.right;
}

}  // namespace com_qv_print_driver_core_cpp_util_v1

namespace ppdforge {
using com_qv_print_driver_core_cpp_util_v1::ARKMediaSizeRect;
using com_qv_print_driver_core_cpp_util_v1::RKMediaSizeRectIsEqualToRect;
using com_qv_print_driver_core_cpp_util_v1::RKMediaSizeRectMake;
}
