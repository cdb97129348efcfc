# Reads cases, a line each: whether case is ignored, the expression, the format and the text, all but the first as
# UTF-8 in hexadecimal, with tabs between. Writes of each match its place and length in UTF-16 units and what the
# format makes of it.
use strict;
use utf8;
use feature 'unicode_strings';
no warnings;
use Encode;

$| = 1;
sub units { return length(encode('UTF-16LE', $_[0])) / 2; }

while (my $case = <STDIN>) {
    chomp $case;
    my ($ignores_case, @texts) = split /\t/, $case, -1;
    my ($expression, $format, $line) = map { decode('UTF-8', pack('H*', $_)) } @texts;
    my $compiled = eval { $ignores_case ? qr/$expression/i : qr/$expression/ };
    if (!defined $compiled) {
        print "malformed\n";
        next;
    }
    # As code, where a name may go on behind $' and $$ is the process.
    $format =~ s/(\\.)|(\$\$)|\$([&`']|\+(?!\{))/defined $1 ? $1 : defined $2 ? '\\$' : "\${$3}"/ges;
    my @matches;
    while ($line =~ /$compiled/g) {
        my ($start, $end) = ($-[0], $+[0]);
        my $expansion = eval "\"$format\"";
        push @matches, units(substr($line, 0, $start)) . '+' . units(substr($line, $start, $end - $start)) . '='
            . unpack('H*', encode('UTF-8', $expansion));
    }
    print join(',', @matches), "\n";
}
