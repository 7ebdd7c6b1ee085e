// The plug-in's own declaration of the stitching library, held to the shape the plug-in relies on.
#include "stitcher_api/pr_source.h"
// After the declaration it checks.
#include "stitcher_api/interface_shape.h"
