# Filled by the exported library's own folder.
