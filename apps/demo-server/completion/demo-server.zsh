#compdef demo-server
# Completion of demo-server's command line for zsh: options, and files for those that take them.

_demo_server_namespace() {
    if compset -P 1 '*='; then
        _files
    else
        _message -e namespaces 'NAMESPACE=SCHEMA'
    fi
}

_arguments -S \
    '(- *)'{-h,--help}'[show help]' \
    '(- *)--version[show the version, the commit, the compiler]' \
    '--address=[where to listen]:address:(127.0.0.1 0.0.0.0)' \
    '--http-port=[port for HTTP]:port:' \
    '--https-port=[port for HTTPS]:port:' \
    '(--replay)--volumes=[make up storage volumes]:number:' \
    '(--users --replay)--user=[serve only this user]:user:' \
    '--password-file=[file with the password of the user]:file:_files' \
    '(--user --replay)--users=[serve only the users in a file]:file:_files' \
    '(--replay)--log=[write a line for each request]:file:_files' \
    '(--replay)*--schema=[add classes and instances to root/cimv2]:file:_files' \
    '(--replay)*--namespace=[add classes and instances to a namespace]:namespace and file:_demo_server_namespace' \
    '--interop=[name of the Interop namespace]:namespace:(interop root/interop root/PG_InterOp)' \
    '--certificate=[certificate for HTTPS, with its chain]:file:_files' \
    '--key=[key of the certificate]:file:_files' \
    '--client-ca=[serve over HTTPS only clients of this authority]:file:_files' \
    '--certificate-out=[write the certificate to a file]:file:_files' \
    '(--volumes --user --users --log --schema --namespace)--replay=[answer from a recording]:file:_files'
