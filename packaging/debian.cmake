# Run by CPack on the trees that become the packages: what Debian wants beyond an installation. The date of the changelog
# is SOURCE_DATE_EPOCH, when that is set.
string(TIMESTAMP KAV_DATE "%a, %d %b %Y %H:%M:%S +0000" UTC)
foreach(package IN LISTS CPACK_COMPONENTS_ALL)
  set(share "${CPACK_TEMPORARY_DIRECTORY}/${package}/usr/share")
  configure_file("${CPACK_KAV_CHANGELOG}" "${share}/doc/${package}/changelog.Debian" @ONLY)
  file(GLOB texts "${share}/doc/${package}/changelog*" "${share}/man/man*/*" "${share}/man/*/man*/*")
  file(CHMOD ${texts} PERMISSIONS OWNER_READ OWNER_WRITE GROUP_READ WORLD_READ)
  execute_process(COMMAND gzip -9n ${texts} COMMAND_ERROR_IS_FATAL ANY)
endforeach()

# Debian has no /usr/bin/python; Ansible chooses an interpreter of its own for a module that names none.
file(GLOB modules "${CPACK_TEMPORARY_DIRECTORY}/*/usr/share/ansible/collections/ansible_collections/*/*/plugins/modules/*")
execute_process(COMMAND sed -i "1{/^#!/d}" ${modules} COMMAND_ERROR_IS_FATAL ANY)
