# The grid widget benchmark shows the window layer's grid (and the Qt reference) on the offscreen platform.
target_link_libraries(${name} PRIVATE nbui Qt6::Widgets)
