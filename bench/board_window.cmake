# The board window benchmark shows the window layer's board window on the offscreen platform.
target_link_libraries(${name} PRIVATE nbui Qt6::Widgets)
