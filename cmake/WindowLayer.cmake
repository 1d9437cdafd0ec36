# The window layer: the windows and dialogs of every subsystem, each in that subsystem's ui/ folder, with
# Designer forms (.ui) beside their classes and icons in resources/. It is a static library so that the
# UI tests link windows directly; the package `noticeboard` is this library plus the engine plus the
# exported entry points, and only the names listed in its version script leave it.
set(NB_UI_FOLDERS core/ui views/ui adapters/ui reports/ui support/ui)
set(NB_UI_SOURCES)
foreach(folder ${NB_UI_FOLDERS})
  file(GLOB found CONFIGURE_DEPENDS
    ${CMAKE_SOURCE_DIR}/${folder}/*.cpp ${CMAKE_SOURCE_DIR}/${folder}/*.h ${CMAKE_SOURCE_DIR}/${folder}/*.ui)
  list(APPEND NB_UI_SOURCES ${found})
endforeach()
file(GLOB NB_UI_RESOURCES CONFIGURE_DEPENDS ${CMAKE_SOURCE_DIR}/resources/*.qrc)

# Forms go through explicit uic rules rather than AUTOUIC: each ui_*.h is then an output the build knows,
# so editing a form recompiles the sources that include it. With AUTOUIC the header was rewritten after
# Ninja had found those sources up to date, and an existing build folder kept the old form until the
# next build.
set(NB_UI_FORMS ${NB_UI_SOURCES})
list(FILTER NB_UI_FORMS INCLUDE REGEX "\\.ui$")
qt6_wrap_ui(NB_UI_FORM_HEADERS ${NB_UI_FORMS})
# A build folder made while AUTOUIC was on still holds its headers in the moc step's include folder, which
# comes first on the include path: they would shadow the forms' current headers.
file(GLOB NB_UI_AUTOUIC_LEFTOVERS ${CMAKE_BINARY_DIR}/nbui_autogen/include/ui_*.h)
if(NB_UI_AUTOUIC_LEFTOVERS)
  file(REMOVE ${NB_UI_AUTOUIC_LEFTOVERS})
endif()
add_library(nbui STATIC ${NB_UI_SOURCES} ${NB_UI_FORM_HEADERS} ${NB_UI_RESOURCES})
set_target_properties(nbui PROPERTIES AUTOMOC ON AUTOUIC OFF AUTORCC ON)
target_include_directories(nbui PRIVATE ${CMAKE_CURRENT_BINARY_DIR})
# The moc step only reruns for the inputs it scanned last time, so a source added later would never be
# scanned in an existing build folder. When the set of sources changes (the globs above make
# CMake run again), its stamp is dropped so that it scans everything anew.
if(NOT "${NB_UI_SOURCES}" STREQUAL "${NB_UI_SOURCES_SCANNED}")
  file(REMOVE ${CMAKE_BINARY_DIR}/nbui_autogen/timestamp)
  set(NB_UI_SOURCES_SCANNED "${NB_UI_SOURCES}" CACHE INTERNAL "window-layer sources at the last moc/uic scan")
endif()
target_include_directories(nbui PUBLIC ${CMAKE_SOURCE_DIR})
target_link_libraries(nbui PUBLIC nbengine Qt6::Widgets Qt6::PrintSupport Qt6::Svg Qt6::Multimedia)

# The package: a real plug-in of a host console, loaded through the platform loader as "noticeboard".
file(GLOB NB_PACKAGE_SOURCES CONFIGURE_DEPENDS ${CMAKE_SOURCE_DIR}/core/ui/package/*.cpp)
if(NB_PACKAGE_SOURCES)
  set(NB_PACKAGE_MAP ${CMAKE_SOURCE_DIR}/core/ui/package/noticeboard.map)
  add_library(noticeboard SHARED ${NB_PACKAGE_SOURCES})
  target_link_libraries(noticeboard PRIVATE nbui)
  set_target_properties(noticeboard PROPERTIES PREFIX "" AUTOMOC ON
                        LINK_DEPENDS ${NB_PACKAGE_MAP})
  target_link_options(noticeboard PRIVATE -Wl,--version-script=${NB_PACKAGE_MAP} -Wl,--no-undefined)
endif()
