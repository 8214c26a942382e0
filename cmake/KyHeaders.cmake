# Public headers live beside their sources and are included everywhere as <kygraph/Name.h>.
# They are linked into one flat staging folder so the build sees the installed layout;
# headers under an internal/ folder stay private.
set(KY_STAGED_INCLUDE_DIR ${CMAKE_BINARY_DIR}/include)
file(MAKE_DIRECTORY ${KY_STAGED_INCLUDE_DIR}/kygraph)

function(ky_public_headers out_var)
  set(all)
  foreach(dir IN LISTS ARGN)
    file(GLOB hdrs CONFIGURE_DEPENDS ${CMAKE_SOURCE_DIR}/${dir}/*.h)
    foreach(h IN LISTS hdrs)
      get_filename_component(name ${h} NAME)
      file(CREATE_LINK ${h} ${KY_STAGED_INCLUDE_DIR}/kygraph/${name} SYMBOLIC)
    endforeach()
    list(APPEND all ${hdrs})
  endforeach()
  set(${out_var} ${all} PARENT_SCOPE)
endfunction()

function(ky_sources out_var)
  set(all)
  foreach(dir IN LISTS ARGN)
    file(GLOB srcs CONFIGURE_DEPENDS ${CMAKE_SOURCE_DIR}/${dir}/*.cpp)
    list(APPEND all ${srcs})
  endforeach()
  set(${out_var} ${all} PARENT_SCOPE)
endfunction()
