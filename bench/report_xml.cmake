# The report benchmark measures with the window layer's Arial measurer on the offscreen platform.
target_sources(${name} PRIVATE ${CMAKE_SOURCE_DIR}/reports/ui/TArialTextMeasurer.cpp)
target_link_libraries(${name} PRIVATE Qt6::Gui)
target_compile_definitions(${name} PRIVATE NB_SOURCE_DIR="${CMAKE_SOURCE_DIR}")
