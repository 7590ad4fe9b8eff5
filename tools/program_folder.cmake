# Puts the files of data/ beside the built program: cmake -DFROM=data -DTO=folder -P program_folder.cmake
# Papers and macros are the person's once they are there, so those are never replaced.
file(GLOB names RELATIVE ${FROM} ${FROM}/*)
foreach(name IN LISTS names)
  if(name MATCHES "\\.([0-9][0-9][0-9]|MCR)$" AND EXISTS ${TO}/${name})
    continue()
  endif()
  configure_file(${FROM}/${name} ${TO}/${name} COPYONLY)
endforeach()
# The font as it is shipped, from which the designer brings characters back.
configure_file(${FROM}/MATH0.PSF ${TO}/MATH0.ORG COPYONLY)
