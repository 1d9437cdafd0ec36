# The display editor benchmark opens the window layer's editor on the offscreen platform.
target_link_libraries(${name} PRIVATE nbui Qt6::Widgets)
