# SPDX-License-Identifier: GPL-3.0-or-later
# The update check test signs its own feeds with a key pair it makes at run time.
find_package(OpenSSL 3 REQUIRED COMPONENTS Crypto)
target_link_libraries(tst_UpdateCheckOverNetwork PRIVATE OpenSSL::Crypto)
