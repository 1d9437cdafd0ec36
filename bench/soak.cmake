# The soak shows the notice grid on the offscreen platform.
target_link_libraries(${name} PRIVATE nbui Qt6::Widgets)
