# Makes the first comment of a header its description; without one, doxygen leaves out functions outside a class.
1i /// @file
0,/^#pragma/s#^//#///#
