# Install folders in the form every install rule and run path needs: relative to the
# prefix. Packagers may pass absolute folders (Debian passes an absolute
# CMAKE_INSTALL_LIBDIR); an absolute folder is turned into its place below the prefix,
# so "cmake --install --prefix", DESTDIR and the run paths below all keep working.

# out = dir relative to the install prefix.
function(tavrin_relative_install_dir out dir)
  if(IS_ABSOLUTE "${dir}")
    file(RELATIVE_PATH dir "${CMAKE_INSTALL_PREFIX}" "${dir}")
  endif()
  set(${out} "${dir}" PARENT_SCOPE)
endfunction()

# out = the path from one install folder to another (both relative to the prefix), as
# $ORIGIN-relative run paths and relative symbolic links need it.
function(tavrin_path_between out from to)
  file(RELATIVE_PATH path "${CMAKE_INSTALL_PREFIX}/${from}" "${CMAKE_INSTALL_PREFIX}/${to}")
  set(${out} "${path}" PARENT_SCOPE)
endfunction()
