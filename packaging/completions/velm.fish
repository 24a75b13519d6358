# fish completion of velm, which says itself what may follow
complete -c velm -a '(velm describe (commandline -opc)[2..-1] (commandline -ct) 2>/dev/null)'
