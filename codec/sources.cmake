target_sources(vorel_core_objects PRIVATE
  ${PROJECT_SOURCE_DIR}/codec/band_rebuild.cpp
  ${PROJECT_SOURCE_DIR}/codec/members_rgb10bf.cpp
  ${PROJECT_SOURCE_DIR}/codec/members_rgb8bf.cpp
  ${PROJECT_SOURCE_DIR}/codec/members_rgba10bf.cpp
  ${PROJECT_SOURCE_DIR}/codec/members_rgba8bf.cpp
  ${PROJECT_SOURCE_DIR}/codec/members_ycbcr10bv422.cpp
  ${PROJECT_SOURCE_DIR}/codec/members_ycbcr10bv444.cpp
  ${PROJECT_SOURCE_DIR}/codec/members_ycbcr8bu444.cpp
  ${PROJECT_SOURCE_DIR}/codec/members_ycbcr8bv422.cpp
  ${PROJECT_SOURCE_DIR}/codec/members_ycbcr8bv444.cpp
  ${PROJECT_SOURCE_DIR}/codec/members_ycbcr8bw422.cpp
  ${PROJECT_SOURCE_DIR}/codec/members_ycbcra10bv4224.cpp
  ${PROJECT_SOURCE_DIR}/codec/members_ycbcra10bv4444.cpp
  ${PROJECT_SOURCE_DIR}/codec/members_ycbcra8bu4444.cpp
  ${PROJECT_SOURCE_DIR}/codec/members_ycbcra8bv4224.cpp
  ${PROJECT_SOURCE_DIR}/codec/members_ycbcra8bv4444.cpp
)
