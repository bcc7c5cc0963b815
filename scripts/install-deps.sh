#!/usr/bin/env bash
# Installs, from Debian's packages, what building and testing Tavrin needs and this
# machine lacks: the compiler and CMake, GoogleTest, ipmitool and OpenIPMI's ipmi_sim for
# the LAN tests, FreeIPMI's ipmi-fru, which reads the example FRU images, and QEMU
# (without its recommended packages) for the VM test, groff to check the manual pages,
# and dpkg-dev for the Debian package's dependencies. Does nothing when everything is
# there. With the argument "package": only what building the package needs.
set -euo pipefail
missing=()
lean=()
command -v cmake >/dev/null || missing+=(cmake)
command -v g++ >/dev/null || missing+=(g++)
command -v make >/dev/null || missing+=(make)
command -v dpkg-shlibdeps >/dev/null || missing+=(dpkg-dev)
if [ "${1:-}" != package ]; then
  [ -f /usr/include/gtest/gtest.h ] || missing+=(libgtest-dev)
  [ -f /usr/include/gmock/gmock.h ] || missing+=(libgmock-dev)
  command -v groff >/dev/null || missing+=(groff-base)
  command -v ipmitool >/dev/null || missing+=(ipmitool)
  command -v ipmi_sim >/dev/null || missing+=(openipmi)
  command -v ipmi-fru >/dev/null || [ -x /usr/sbin/ipmi-fru ] || missing+=(freeipmi-tools)
  command -v qemu-system-x86_64 >/dev/null || lean+=(qemu-system-x86)
fi
if [ ${#missing[@]} -gt 0 ] || [ ${#lean[@]} -gt 0 ]; then
  echo "Installing: ${missing[*]} ${lean[*]}"
  sudo=""
  [ "$(id -u)" -eq 0 ] || sudo="sudo"
  $sudo apt-get update -qq
  [ ${#missing[@]} -eq 0 ] || DEBIAN_FRONTEND=noninteractive $sudo apt-get install -y -qq "${missing[@]}" >/dev/null
  [ ${#lean[@]} -eq 0 ] ||
    DEBIAN_FRONTEND=noninteractive $sudo apt-get install -y -qq --no-install-recommends "${lean[@]}" >/dev/null
fi
