# SPDX-License-Identifier: GPL-3.0-or-later
# The update check: the release feed over QtNetwork, its Ed25519 signature checked with OpenSSL.
# Where releases are announced and the key they are signed with are configuration of a build, not
# code: a fork or a distribution sets its own.
find_package(OpenSSL 3 REQUIRED COMPONENTS Crypto)
set(TOLVANE_UPDATE_FEED_URL "https://tolvane.app/updates/linux/feed.json"
    CACHE STRING "Address of the signed release feed that \"Check for Updates…\" reads (https)")
set(TOLVANE_UPDATE_PUBLIC_KEY "SlbPPEXBQH/6Ugmkdc6+51oWmBcfGoHIouNFe9VevzI="
    CACHE STRING "Ed25519 public key the release feed is signed with: 32 raw bytes in base64")
configure_file(${CMAKE_CURRENT_LIST_DIR}/updates/UpdateFeedBuildSettings.h.in
               ${CMAKE_CURRENT_BINARY_DIR}/generated/platform/linux/updates/UpdateFeedBuildSettings.h @ONLY)
target_include_directories(${fragment_target} PRIVATE ${CMAKE_CURRENT_BINARY_DIR}/generated)
target_link_libraries(${fragment_target} PUBLIC Qt6::Network PRIVATE OpenSSL::Crypto)
