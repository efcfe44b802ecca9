# What Debian asks of programs that read what others send. Optimised builds alone: FORTIFY needs the optimiser, and the
# sanitizers look closer than it does.
set(released "$<CONFIG:Release,RelWithDebInfo>")
target_compile_options(varnel_options INTERFACE "$<${released}:-fstack-protector-strong;-fstack-clash-protection>")
target_compile_options(varnel_options INTERFACE "$<${released}:-U_FORTIFY_SOURCE;-D_FORTIFY_SOURCE=2>")
if(CMAKE_SYSTEM_PROCESSOR MATCHES "x86_64|AMD64|i.86")
    target_compile_options(varnel_options INTERFACE "$<${released}:-fcf-protection>")
endif()
target_link_options(varnel_options INTERFACE "$<${released}:-Wl,-z,relro,-z,now>")
