# Hardening and static linking, for packages. Neither changes what a search finds.
if(ORVELIN_HARDENING)
  # The level of the library's checks is set by some compilers themselves. Without optimisation
  # there are none, and the library would warn.
  target_compile_options(orvelin_flags INTERFACE
    -fstack-protector-strong
    "$<$<NOT:$<CONFIG:Debug,None>>:SHELL:-U_FORTIFY_SOURCE -D_FORTIFY_SOURCE=2>"
    -fPIE)
  target_link_options(orvelin_flags INTERFACE "LINKER:-z,relro,-z,now")
endif()

# An option behind it takes back the one before: exactly one kind of program may be asked for.
if(ORVELIN_STATIC AND ORVELIN_HARDENING)
  target_link_options(orvelin_flags INTERFACE -static-pie)
elseif(ORVELIN_STATIC)
  target_link_options(orvelin_flags INTERFACE -static)
elseif(ORVELIN_HARDENING)
  target_link_options(orvelin_flags INTERFACE -pie)
endif()
