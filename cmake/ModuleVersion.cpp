// Linked into every bundled module.

#include <valvecell/Export.h>

VALVECELL_MODULE_VERSION(VALVECELL_VERSION)
