#pragma once

/// Finds an optional interface of a module.
///
/// A module's main interface answers `extension(id)` with a pointer to the asked-for interface or null, and each
/// optional interface names itself by a static `id`. So a module may leave any of them out, and no type information
/// has to agree across libraries:
///
///     if (auto* settings = extensionOf<ICameraSettings>(coreCtrl)) ...
///
/// The pointer belongs to the module and lives as long as the main object.
template <typename Interface, typename Main>
Interface* extensionOf(Main* main)
{
    return main ? static_cast<Interface*>(main->extension(Interface::id)) : nullptr;
}
