# Puts the files of data/ beside the built program: cmake -DFROM=data -DTO=folder -P program_folder.cmake
# Papers and macros are the person's once they are there, so those are never replaced.
# Contents and index of another help text would not be made anew while they are there.
if(EXISTS ${TO}/QRX.HLP)
  file(SHA256 ${FROM}/QRX.HLP shipped)
  file(SHA256 ${TO}/QRX.HLP there)
  if(NOT shipped STREQUAL there)
    file(REMOVE ${TO}/QRX.HCT ${TO}/QRX.HIX)
  endif()
endif()
file(GLOB names RELATIVE ${FROM} ${FROM}/*)
foreach(name IN LISTS names)
  if(name MATCHES "\\.([0-9][0-9][0-9]|MCR)$" AND EXISTS ${TO}/${name})
    continue()
  endif()
  configure_file(${FROM}/${name} ${TO}/${name} COPYONLY)
endforeach()
# The font as it is shipped, from which the designer brings characters back.
configure_file(${FROM}/MATH0.PSF ${TO}/MATH0.ORG COPYONLY)
