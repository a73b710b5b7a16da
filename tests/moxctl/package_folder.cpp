// SPDX-License-Identifier: Apache-2.0
#include "moxctl/package_folder.hpp"

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <stdexcept>

namespace test
{

namespace
{

void must(const Ended &ended)
{
    if (ended.status != 0)
        throw std::runtime_error(ended.err);
}

} // namespace

PackageFolder::PackageFolder() : folder_("/var/tmp/moxctl-package-XXXXXX")
{
    if (::mkdtemp(folder_.data()) == nullptr)
        throw std::runtime_error("cannot make a folder for packages");
}

PackageFolder::~PackageFolder()
{
    std::error_code error;
    std::filesystem::remove_all(folder_, error);
}

std::string PackageFolder::path(const std::string &name) const
{
    return folder_ + '/' + name;
}

void PackageFolder::write(const std::string &name, const std::string &content) const
{
    std::filesystem::create_directories(std::filesystem::path(path(name)).parent_path());
    std::ofstream(path(name), std::ios::binary) << content;
}

std::string PackageFolder::read(const std::string &name) const
{
    std::ifstream stream(path(name), std::ios::binary);
    return {std::istreambuf_iterator<char>(stream), {}};
}

std::string PackageFolder::sample(const std::string &name, const Words &options) const
{
    Words words{"package", "sample", path(name)};
    words.insert(words.end(), options.begin(), options.end());
    must(moxctl_alone(words));
    return path(name);
}

std::string PackageFolder::build(const std::string &name, const std::string &files) const
{
    write(name + ".json", R"({"name":"made","version":"1","files":[)" + files + "]}");
    must(moxctl_alone({"package", "build", path(name), path(name + ".json")}));
    return path(name);
}

std::string PackageFolder::forge(const std::string &name, const std::string &manifest_files,
                                 const Words &files) const
{
    write("manifest.json", R"({"format":1,"name":"forged","version":"1","files":[)" + manifest_files + "]}");
    Words tar{"tar", "-C", folder_, "-P", "-cf", path(name), "manifest.json", "manifest.sha256"};
    tar.insert(tar.end(), files.begin(), files.end());
    must(run({"sh", "-c", "cd " + folder_ + " && sha256sum manifest.json > manifest.sha256"}));
    must(run(tar));
    return path(name);
}

} // namespace test
