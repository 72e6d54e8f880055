include(CMakeFindDependencyMacro)
find_dependency(Qt5 5.15 COMPONENTS Core Gui)
include("${CMAKE_CURRENT_LIST_DIR}/valvecell-targets.cmake")

# Where the headers lie: a module that implements IUserCtrl lists "${valvecell_INCLUDE_DIR}/valvecell/IUserCtrl.h" among
# its sources.
get_filename_component(valvecell_INCLUDE_DIR "${CMAKE_CURRENT_LIST_DIR}/../../../include" ABSOLUTE)
